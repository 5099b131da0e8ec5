#include "presentation/ReaderPanel.h"

#include "presentation/PanelFrame.h"
#include "presentation/PanelShadow.h"
#include "presentation/hover_help/HoverHelpTrackingView.h"

#include <QAccessibleWidget>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QWindow>

#include <utility>

namespace Quillory {

namespace {

// How long the window system may take over the first picture before the panel goes on without it.
constexpr std::chrono::milliseconds longestUntilExposed { 200 };

// To the toolkit only its own kinds of windows are windows.
QAccessibleInterface* makeAccessible(QString const&, QObject* object)
{
    auto* const panel = qobject_cast<ReaderPanel*>(object);
    return panel ? new QAccessibleWidget(panel, QAccessible::Window) : nullptr;
}

}

ReaderPanel::ReaderPanel(LibraryStore& store, Services services)
    : QWidget(nullptr, Qt::Window | Qt::FramelessWindowHint)
    , m_store(store)
    , m_services(std::move(services))
    , m_view(
          store, m_services.reader, [this] { onDismiss(); }, this)
    , m_drag(*this)
    , m_corners(*this)
{
    QAccessible::installFactory(makeAccessible);
    resize(PanelFrame::defaultSize.toSize());
    setWindowTitle(m_view.windowTitle());
    connect(&m_view, &QWidget::windowTitleChanged, this, &QWidget::setWindowTitle);
    m_view.topBar()->installEventFilter(this);
    makeNativeWindow();
    ensurePolished();
    m_compositingChanges = m_services.compositing.observeChanges([this] { followCompositing(); });
    m_screenChanges = m_services.screens.observeChanges([this] { comeOnScreen(); });
    // Window managers may give the front of a dialog that ends to any window; it belongs to the one that had it.
    m_filePanels = m_store.filePanel.addNotifier([this] {
        if (!m_store.filePanel.value() && isVisible())
            makeKeyAndOrderFront();
    });
}

ReaderPanel::~ReaderPanel() = default;

// The native window now, so that the first show finds everything but the pixels. It can be shone through if a compositor
// runs; without one its pictures would need some 2 ms longer for that.
void ReaderPanel::makeNativeWindow()
{
    m_canShineThrough = m_services.compositing.isRunning();
    setAttribute(Qt::WA_TranslucentBackground, m_canShineThrough);
    m_window = m_services.makeWindow(winId());
    // It fills all of itself but corners and shadow.
    setAttribute(Qt::WA_TranslucentBackground, false);
    setAttribute(Qt::WA_NoSystemBackground, false);
    windowHandle()->installEventFilter(this);
    m_edges = std::make_unique<WindowEdges>(
        *this, [this](Qt::Edges edges, QPoint pointer) { userTakes(edges, pointer); });
    shape();
}

// A window keeps for life what it was made with. It is made again for a compositor that has come since, as at the
// beginning of a session, but never while it is up.
void ReaderPanel::followCompositing()
{
    if (m_services.compositing.isRunning() && !m_canShineThrough && !isVisible()) {
        destroy();
        makeNativeWindow();
    } else {
        shape();
    }
}

// The shadow is part of the window, and not of the panel's frame.
void ReaderPanel::shape()
{
    bool const isComposited = m_services.compositing.isRunning() && m_canShineThrough;
    m_corners.setVisible(isComposited);
    auto const shadow = isComposited && m_services.compositing.leavesShadowsToWindows() ? PanelShadow::margins
                                                                                        : QMargins();
    auto const kept = frame();
    if (isVisible() && shadow != contentsMargins())
        m_restoringPanelFrame.place(PanelFrameGuard::Until::nextFrame);
    setContentsMargins(shadow);
    setMinimumSize(PanelFrame::minimumSize.toSize().grownBy(shadow));
    askForFrame(kept);
    m_view.setGeometry(contentsRect());
    tellShadow();
}

void ReaderPanel::tellShadow()
{
    auto const ratio = devicePixelRatioF();
    m_window->setShadow((contentsMargins().toMarginsF() * ratio).toMargins(), (QSizeF(size()) * ratio).toSize());
}

QRect ReaderPanel::frame() const
{
    return geometry().marginsRemoved(contentsMargins());
}

QRect ReaderPanel::placedFrame() const
{
    return windowHandle()->geometry().marginsRemoved(contentsMargins());
}

void ReaderPanel::askForFrame(QRect const& frame)
{
    setGeometry(frame.marginsAdded(contentsMargins()));
}

void ReaderPanel::show(PanelPresence presence)
{
    if (isVisible() && !m_services.workspace.canFetchWindows())
        hidePanel();
    takeFrame();
    m_view.startAfresh();
    m_view.refresh();
    applyPeekLevel(presence);
    come();
    focusReader();
    m_shown->isFresh = true;
}

// As it is, up already or not.
void ReaderPanel::come()
{
    m_services.workspace.prepareToShow(winId());
    m_window->willShow();
    bool const wasUp = m_shown.has_value();
    m_shown = Shown { .isLevelTold = wasUp && m_shown->isLevelTold, .isFresh = false };
    QWidget::show();
    if (wasUp) {
        m_window->didShow();
    } else {
        paintAhead();
        m_levelTask = m_services.reader.executor.after(longestUntilExposed, [this] { tellLevel(); });
    }
    toFront();
}

// While server and window manager are busy with mapping the window, and not only when they have: its picture then takes
// no time of its own. The toolkit would wait to be told of the map.
void ReaderPanel::paintAhead()
{
    setAttribute(Qt::WA_Mapped);
    repaint();
}

void ReaderPanel::takeFrame()
{
    bool const isFirst = !m_screens;
    m_screens = m_services.screens.screens();
    auto const screen = usersScreen();
    if (isFirst && screen)
        askForFrame(PanelFrame::centered(screen->visibleFrame).toRect());
    // One that is in place already stays there, also where a window manager has corrected it.
    if (isVisible() && screen == PanelFrame::screenOf(*m_screens, frame()))
        return;
    auto const stored = m_services.defaults.get<QString>(frameKey);
    auto const wanted = PanelFrame::forShow(stored, frame().topLeft(), *m_screens, screen).toRect();
    using enum PanelFrameGuard::Until;
    m_restoringPanelFrame.place(isVisible() ? nextFrame : inFront);
    askForFrame(wanted);
}

void ReaderPanel::didComeUp()
{
    if (m_shown && !m_shown->isLevelTold)
        m_levelTask = m_services.reader.executor.post([this] { tellLevel(); });
}

// A panel that is up when its screen goes follows to another one, which is not the user's wish.
void ReaderPanel::comeOnScreen()
{
    if (!isVisible())
        return;
    m_screens = m_services.screens.screens();
    auto const screen = PanelFrame::screenOf(*m_screens, frame());
    auto const before = frame();
    auto const wanted = screen ? PanelFrame::clamped(before, screen->visibleFrame).toRect() : before;
    m_restoringPanelFrame.place(PanelFrameGuard::Until::nextFrame);
    if (wanted == before)
        m_restoringPanelFrame.settle(wanted);
    else
        askForFrame(wanted);
}

std::optional<Screens::Screen> ReaderPanel::usersScreen() const
{
    auto const front = m_screens->size() > 1 ? m_services.workspace.frontmostFrame() : std::nullopt;
    return PanelFrame::usersScreen(*m_screens, front, m_services.screens.pointer());
}

// The window's own events, since the widget takes its frame for granted as soon as it has asked for it. A window manager
// may make room on changed screens before the toolkit tells of them.
void ReaderPanel::followFrame(QEvent const& event)
{
    if (m_services.screens.screens() != m_screens)
        m_restoringPanelFrame.place(PanelFrameGuard::Until::nextFrame);
    m_restoringPanelFrame.frameIs(placedFrame());
    if (event.type() == QEvent::Move)
        onMoved();
    else
        onResized();
}

void ReaderPanel::userTakes(Qt::Edges edges, QPoint pointer)
{
    m_restoringPanelFrame.settle(placedFrame());
    using enum WindowDrag::By;
    m_drag.begin(edges, pointer, m_presence == PanelPresence::peek ? program : windowManager);
}

void ReaderPanel::makeKeyAndOrderFront()
{
    if (m_shown && std::exchange(m_shown->isFresh, false))
        return;
    if (isVisible() && !isActiveWindow() && !m_services.workspace.canFetchWindows()) {
        hidePanel();
        return come();
    }
    toFront();
}

void ReaderPanel::toFront()
{
    raise();
    m_services.workspace.activateIgnoringOtherApps(winId());
}

void ReaderPanel::orderOut()
{
    hidePanel();
}

void ReaderPanel::hidePanel()
{
    m_focusTask.end();
    m_levelTask.end();
    m_shown.reset();
    hide();
    m_window->didHide();
    takeLevel();
    // Later, since this may be the window's own event.
    if (m_services.compositing.isRunning() && !m_canShineThrough)
        m_levelTask = m_services.reader.executor.post([this] { followCompositing(); });
}

void ReaderPanel::savePanelFrame()
{
    if (!m_restoringPanelFrame.isMovedByUser())
        return;
    m_services.defaults.setValue(frameKey, PanelFrame::string(placedFrame()));
}

void ReaderPanel::focusReader()
{
    m_focusTask = m_services.reader.executor.post([this] {
        if (m_shown)
            m_shown->isFresh = false;
        if (m_store.librarySearchVisible.value() || m_store.findVisible.value())
            return;
        m_view.takeKeyboard();
    });
}

void ReaderPanel::applyPeekLevel(PanelPresence presence)
{
    m_presence = presence;
    if (!m_shown)
        takeLevel();
    else if (m_shown->isLevelTold && presence == PanelPresence::peek)
        tellLevel();
    else if (m_shown->isLevelTold)
        m_levelTask = m_services.reader.executor.post([this] { tellLevel(); });
}

void ReaderPanel::takeLevel()
{
    m_window->setLevel(levelOf(m_presence));
    m_window->setCollectionBehavior(collectionBehaviorOf(m_presence));
}

// Window managers take their time over it, and neither the picture of a panel that comes nor the focus of the one that
// goes should wait for that.
void ReaderPanel::tellLevel()
{
    takeLevel();
    if (!std::exchange(m_shown->isLevelTold, true))
        m_window->didShow();
}

void ReaderPanel::dismissTooltips()
{
    for (auto* const help : findChildren<HoverHelpTrackingView*>())
        help->dismiss();
}

// Only hidden: the toolkit would destroy the native window of one that lets itself be closed, and make the next one
// without what `m_window` has told of it.
void ReaderPanel::closeEvent(QCloseEvent* event)
{
    event->ignore();
    if (!isVisible())
        return;
    onClosing();
    hidePanel();
}

void ReaderPanel::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow())
        m_restoringPanelFrame.settle(placedFrame());
}

void ReaderPanel::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    m_view.setGeometry(contentsRect());
    if (!contentsMargins().isNull())
        tellShadow();
}

// The contents fill their own place.
void ReaderPanel::paintEvent(QPaintEvent*)
{
    if (contentsMargins().isNull())
        return;
    QPainter painter(this);
    painter.setClipRegion(QRegion(rect()) - contentsRect());
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.fillRect(rect(), Qt::transparent);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    PanelShadow::paint(painter, contentsRect());
}

void ReaderPanel::keyPressEvent(QKeyEvent* event)
{
    // With the keyboard on nothing in it.
    if (!m_view.perform(*event))
        QWidget::keyPressEvent(event);
}

bool ReaderPanel::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == windowHandle()) {
        if (event->type() == QEvent::Expose && windowHandle()->isExposed())
            didComeUp();
        else if (event->type() == QEvent::Move || event->type() == QEvent::Resize)
            followFrame(*event);
        return false;
    }
    if (event->type() == QEvent::MouseButtonPress) {
        if (auto const& press = static_cast<QMouseEvent const&>(*event); press.button() == Qt::LeftButton) {
            userTakes({}, press.globalPosition().toPoint());
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

}
