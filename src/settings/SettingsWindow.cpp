#include "settings/SettingsWindow.h"

#include "presentation/PanelFrame.h"
#include "presentation/hover_help/HoverHelpHost.h"
#include "reader/FocusOrder.h"
#include "reader/Panes.h"
#include "reader/ReaderStyle.h"
#include "settings/SettingsPlace.h"
#include "settings/SettingsView.h"

#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QResizeEvent>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>

#include <utility>

namespace Quillory {

SettingsWindow::SettingsWindow(SettingsServices services)
    : QWidget(nullptr, Qt::Window)
    , m_services(std::move(services))
    , m_scroll(new QScrollArea(this))
{
    setWindowTitle(tr("Quillory Settings"));
    makePane(*this, "chrome");
    new HoverHelpHost(*this, m_services.executor, m_services.notifications);
    m_view = new SettingsView(m_services, m_scroll);
    makePane(*m_view, "chrome");
    m_scroll->setWidget(m_view);
    m_scroll->setWidgetResizable(true);
    m_scroll->setFrameShape(QFrame::NoFrame);
    m_scroll->setFocusPolicy(Qt::NoFocus);
    auto* const all = new QVBoxLayout(this);
    all->setContentsMargins(0, 0, 0, 0);
    all->addWidget(m_scroll);
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
        if (now && isAncestorOf(now))
            m_lastStop = now;
    });
    m_filePanels = m_services.store.filePanel.addNotifier([this] { followFilePanel(); });
    applyStyle();
}

void SettingsWindow::bringToFront()
{
    if (isVisible() && !isActiveWindow() && !m_services.workspace.canFetchWindows())
        hide();
    if (!isVisible()) {
        place();
        m_services.workspace.prepareToShow(winId());
        show();
        m_scroll->ensureVisible(0, 0);
        if (auto const stops = FocusOrder::stops(*this, {}); !stops.empty())
            stops.front()->setFocus(Qt::OtherFocusReason);
    } else if (isMinimized()) {
        showNormal();
    }
    raise();
    m_services.workspace.activateIgnoringOtherApps(winId());
}

// No narrower than the widest button, which another language or a larger font may make wider.
void SettingsWindow::setLeastSize()
{
    auto const frame = m_scroll->verticalScrollBar()->sizeHint().width();
    setMinimumSize(SettingsPlace::minimumSize.expandedTo({ m_view->minimumSizeHint().width() + frame, 0 }));
}

void SettingsWindow::place()
{
    setLeastSize();
    auto const screens = m_services.screens.screens();
    auto const reader = m_services.readerFrame();
    auto const screen = reader
        ? PanelFrame::screenOf(screens, *reader)
        : PanelFrame::usersScreen(screens, m_services.workspace.frontmostFrame(), m_services.screens.pointer());
    auto const stored = m_services.defaults.get<QString>(frameKey).value_or(QString());
    auto const storedSize = PanelFrame::fromString(stored).size().toSize();
    auto const size = storedSize.isEmpty() ? SettingsPlace::defaultSize : storedSize.expandedTo(minimumSize());
    if (screen)
        setGeometry(SettingsPlace::frame(size, screen->visibleFrame, reader));
    else
        resize(size);
}

// The reader takes the front at the end of each file panel; after one of ours it belongs here.
void SettingsWindow::followFilePanel()
{
    bool const isOpen = m_services.store.filePanel.value() != nullptr;
    if (isOpen)
        m_hasFilePanel = isActiveWindow();
    else if (std::exchange(m_hasFilePanel, false) && isVisible())
        m_frontTask = m_services.executor.post([this] { bringToFront(); });
}

void SettingsWindow::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange)
        applyStyle();
}

void SettingsWindow::applyStyle()
{
    if (auto const sheet = ReaderStyle::sheet(palette(), QApplication::font()); sheet != styleSheet())
        setStyleSheet(sheet);
}

// Only hidden, so that the next time it stands ready: the toolkit would destroy the native window of one that lets
// itself be closed.
void SettingsWindow::closeEvent(QCloseEvent* event)
{
    event->ignore();
    hide();
}

void SettingsWindow::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    bool const isUsersWish = event->spontaneous() && isVisible() && !isMaximized() && !isFullScreen();
    if (isUsersWish)
        m_services.defaults.setValue(frameKey, PanelFrame::string(geometry()));
}

void SettingsWindow::keyPressEvent(QKeyEvent* event)
{
    bool const isW = event->key() == Qt::Key_W
        && (event->modifiers() == Qt::ControlModifier || event->modifiers() == Qt::MetaModifier);
    if (event->key() == Qt::Key_Escape || isW)
        close();
    else
        QWidget::keyPressEvent(event);
}

bool SettingsWindow::focusNextPrevChild(bool forwards)
{
    auto const stops = FocusOrder::stops(*this, {});
    auto* const current = focusWidget() ? focusWidget() : m_lastStop.data();
    auto* const next = FocusOrder::next(stops, current, forwards);
    if (next)
        next->setFocus(forwards ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    return next != nullptr;
}

}
