#include "presentation/ReaderPanel.h"

#include "presentation/PanelFrame.h"
#include "presentation/WindowEdges.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QToolTip>
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
    , m_view(store, [this] { onDismiss(); }, this)
{
    setMinimumSize(PanelFrame::minimumSize.toSize());
    resize(PanelFrame::defaultSize.toSize());
    setWindowTitle(m_view.windowTitle());
    connect(&m_view, &QWidget::windowTitleChanged, this, &QWidget::setWindowTitle);
    m_view.topBar()->installEventFilter(this);
    // The native window now, so that the first show finds everything but the pixels.
    m_window = m_services.makeWindow(winId());
    ensurePolished();
    windowHandle()->installEventFilter(this);
    m_screenChanges = m_services.screens.observeChanges([this] { comeOnScreen(); });
    // Window managers may give the front of a dialog that ends to any window; it belongs to the one that had it.
    m_filePanels = m_store.filePanel.addNotifier([this] {
        if (!m_store.filePanel.value() && isVisible())
            makeKeyAndOrderFront();
    });
    new WindowEdges(*this, [this] { m_restoringPanelFrame.userMoves(); });
}

ReaderPanel::~ReaderPanel() = default;

void ReaderPanel::show(PanelPresence presence)
{
    takeFrame();
    m_view.startAfresh();
    m_view.refresh();
    applyPeekLevel(presence);
    m_services.workspace.prepareToShow(winId());
    m_window->willShow();
    bool const wasVisible = isVisible();
    QWidget::show();
    if (wasVisible)
        m_window->didShow();
    else
        m_levelTask = m_services.executor.after(longestUntilExposed, [this] { tellLevel(); });
    makeKeyAndOrderFront();
    focusReader();
    m_isJustShown = true;
}

void ReaderPanel::takeFrame()
{
    if (!std::exchange(m_isPlaced, true)) {
        if (auto const visible = visibleFrame())
            move(PanelFrame::centered(*visible).topLeft().toPoint());
    }
    auto const stored = m_services.defaults.get<QString>(QLatin1StringView(frameKey));
    auto const frame = PanelFrame::forShow(stored, pos(), visibleFrame()).toRect();
    if (isVisible() && frame == geometry())
        return;
    m_restoringPanelFrame.begin(frame);
    setGeometry(frame);
}

void ReaderPanel::didComeUp()
{
    m_restoringPanelFrame.frameIs(geometry(), true);
    if (isVisible() && !m_isLevelTold)
        m_levelTask = m_services.executor.post([this] { tellLevel(); });
}

// A panel that is up when its screen goes follows to another one, which is not the user's wish.
void ReaderPanel::comeOnScreen()
{
    auto const visible = isVisible() ? visibleFrame() : std::nullopt;
    auto const frame = visible ? PanelFrame::clamped(geometry(), *visible).toRect() : geometry();
    if (frame == geometry())
        return;
    m_restoringPanelFrame.begin(frame);
    setGeometry(frame);
}

// A panel that is up stays on its screen; a hidden one comes to where the user is.
std::optional<QRectF> ReaderPanel::visibleFrame() const
{
    auto const screens = m_services.screens.screens();
    auto const usersScreen = [&] {
        auto const front = screens.size() > 1 ? m_services.workspace.frontmostFrame() : std::nullopt;
        return PanelFrame::usersScreen(screens, front, m_services.screens.pointer());
    };
    auto const screen = isVisible() ? PanelFrame::screenOf(screens, geometry()) : usersScreen();
    return screen ? std::optional<QRectF>(screen->visibleFrame) : std::nullopt;
}

void ReaderPanel::makeKeyAndOrderFront()
{
    if (std::exchange(m_isJustShown, false))
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
    m_isJustShown = false;
    m_isLevelTold = false;
    hide();
    m_window->didHide();
    takeLevel();
}

void ReaderPanel::savePanelFrame()
{
    if (m_restoringPanelFrame.isOn())
        return;
    m_services.defaults.setValue(QLatin1StringView(frameKey), PanelFrame::string(geometry()));
}

void ReaderPanel::focusReader()
{
    m_focusTask = m_services.executor.post([this] {
        m_isJustShown = false;
        if (m_store.librarySearchVisible.value() || m_store.findVisible.value())
            return;
        if (auto* const text = m_view.textView(); text->isVisibleTo(this))
            text->setFocus();
    });
}

void ReaderPanel::applyPeekLevel(PanelPresence presence)
{
    m_presence = presence;
    if (!isVisible())
        takeLevel();
    else if (presence == PanelPresence::peek && m_isLevelTold)
        tellLevel();
    else if (m_isLevelTold)
        m_levelTask = m_services.executor.post([this] { tellLevel(); });
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
    if (!std::exchange(m_isLevelTold, true))
        m_window->didShow();
}

void ReaderPanel::dismissTooltips()
{
    QToolTip::hideText();
}

void ReaderPanel::closeEvent(QCloseEvent* event)
{
    event->accept();
    if (!isVisible())
        return;
    onClosing();
    hidePanel();
}

void ReaderPanel::moveEvent(QMoveEvent* event)
{
    QWidget::moveEvent(event);
    onMoved();
    m_restoringPanelFrame.frameIs(geometry(), windowHandle() && windowHandle()->isExposed());
}

void ReaderPanel::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    m_view.resize(size());
    onResized();
    m_restoringPanelFrame.frameIs(geometry(), windowHandle() && windowHandle()->isExposed());
}

void ReaderPanel::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape)
        onDismiss();
    else if (event->matches(QKeySequence::Quit))
        QCoreApplication::exit();
    else
        QWidget::keyPressEvent(event);
}

bool ReaderPanel::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == windowHandle()) {
        if (event->type() == QEvent::Expose && windowHandle()->isExposed())
            didComeUp();
        return false;
    }
    if (event->type() == QEvent::MouseButtonPress && static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton) {
        m_restoringPanelFrame.userMoves();
        return windowHandle()->startSystemMove();
    }
    return QWidget::eventFilter(watched, event);
}

}
