#include "presentation/ReaderPanel.h"

#include "presentation/PanelFrame.h"
#include "presentation/WindowEdges.h"
#include "presentation/hover_help/HoverHelpTrackingView.h"

#include <QCloseEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWindow>

#include <utility>

namespace Quillory {

namespace {

// How long the window system may take over the first picture before the panel goes on without it.
constexpr std::chrono::milliseconds longestUntilExposed { 200 };

}

ReaderPanel::ReaderPanel(LibraryStore& store, Services services)
    : QWidget(nullptr, Qt::Window | Qt::FramelessWindowHint)
    , m_store(store)
    , m_services(std::move(services))
    , m_view(
          store, m_services.reader, [this] { onDismiss(); }, this)
    , m_drag(*this)
    , m_canShineThrough(m_services.compositing.isRunning())
    , m_corners(*this)
{
    setMinimumSize(PanelFrame::minimumSize.toSize());
    resize(PanelFrame::defaultSize.toSize());
    setWindowTitle(m_view.windowTitle());
    connect(&m_view, &QWidget::windowTitleChanged, this, &QWidget::setWindowTitle);
    m_view.topBar()->installEventFilter(this);
    makeNativeWindow();
    ensurePolished();
    windowHandle()->installEventFilter(this);
    m_screenChanges = m_services.screens.observeChanges([this] { comeOnScreen(); });
    // Window managers may give the front of a dialog that ends to any window; it belongs to the one that had it.
    m_filePanels = m_store.filePanel.addNotifier([this] {
        if (!m_store.filePanel.value() && isVisible())
            makeKeyAndOrderFront();
    });
    new WindowEdges(*this, [this](Qt::Edges edges, QPoint pointer) { userTakes(edges, pointer); });
}

ReaderPanel::~ReaderPanel() = default;

// The native window now, so that the first show finds everything but the pixels. It is never remade: one that can't be
// shone through from the start stays square. Elsewhere its pictures would need some 2 ms longer.
void ReaderPanel::makeNativeWindow()
{
    setAttribute(Qt::WA_TranslucentBackground, m_canShineThrough);
    m_window = m_services.makeWindow(winId());
    // It fills all of itself but the corners.
    setAttribute(Qt::WA_TranslucentBackground, false);
    setAttribute(Qt::WA_NoSystemBackground, false);
    m_compositingChanges = m_services.compositing.observeChanges([this] { shapeCorners(); });
    shapeCorners();
}

void ReaderPanel::shapeCorners()
{
    m_corners.setVisible(m_services.compositing.isRunning() && m_canShineThrough);
}

void ReaderPanel::show(PanelPresence presence)
{
    if (isVisible() && !m_window->canBeFetched())
        hidePanel();
    takeFrame();
    m_view.startAfresh();
    m_view.refresh();
    applyPeekLevel(presence);
    m_services.workspace.prepareToShow(winId());
    m_window->willShow();
    bool const wasUp = m_shown.has_value();
    m_shown = Shown { .isLevelTold = wasUp && m_shown->isLevelTold, .isFresh = false };
    QWidget::show();
    if (wasUp)
        m_window->didShow();
    else
        m_levelTask = m_services.reader.executor.after(longestUntilExposed, [this] { tellLevel(); });
    makeKeyAndOrderFront();
    focusReader();
    m_shown->isFresh = true;
}

void ReaderPanel::takeFrame()
{
    bool const isFirst = !m_screens;
    m_screens = m_services.screens.screens();
    auto const screen = usersScreen();
    if (isFirst && screen)
        move(PanelFrame::centered(screen->visibleFrame).topLeft().toPoint());
    // One that is in place already stays there, also where a window manager has corrected it.
    if (isVisible() && screen == PanelFrame::screenOf(*m_screens, geometry()))
        return;
    auto const stored = m_services.defaults.get<QString>(frameKey);
    auto const frame = PanelFrame::forShow(stored, pos(), *m_screens, screen).toRect();
    using enum PanelFrameGuard::Until;
    m_restoringPanelFrame.place(isVisible() ? nextFrame : inFront);
    setGeometry(frame);
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
    auto const screen = PanelFrame::screenOf(*m_screens, geometry());
    auto const frame = screen ? PanelFrame::clamped(geometry(), screen->visibleFrame).toRect() : geometry();
    m_restoringPanelFrame.place(PanelFrameGuard::Until::nextFrame);
    if (frame == geometry())
        m_restoringPanelFrame.settle(frame);
    else
        setGeometry(frame);
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
    m_restoringPanelFrame.frameIs(windowHandle()->geometry());
    if (event.type() == QEvent::Move)
        onMoved();
    else
        onResized();
}

void ReaderPanel::userTakes(Qt::Edges edges, QPoint pointer)
{
    m_restoringPanelFrame.settle(windowHandle()->geometry());
    using enum WindowDrag::By;
    m_drag.begin(edges, pointer, m_presence == PanelPresence::peek ? program : windowManager);
}

void ReaderPanel::makeKeyAndOrderFront()
{
    if (m_shown && std::exchange(m_shown->isFresh, false))
        return;
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
}

void ReaderPanel::savePanelFrame()
{
    if (!m_restoringPanelFrame.isMovedByUser())
        return;
    m_services.defaults.setValue(frameKey, PanelFrame::string(windowHandle()->geometry()));
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

void ReaderPanel::closeEvent(QCloseEvent* event)
{
    event->accept();
    if (!isVisible())
        return;
    onClosing();
    hidePanel();
}

void ReaderPanel::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow())
        m_restoringPanelFrame.settle(windowHandle()->geometry());
}

void ReaderPanel::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    m_view.resize(size());
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
