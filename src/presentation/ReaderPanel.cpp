#include "presentation/ReaderPanel.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QCursor>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScreen>
#include <QWindow>

#include <algorithm>

namespace Quillory {

namespace {

constexpr QSize defaultSize { 880, 640 };
constexpr QSize smallestSize { 440, 360 };

}

ReaderPanel::ReaderPanel(LibraryStore& store, Workspace& workspace)
    : QWidget(nullptr, Qt::Window | Qt::FramelessWindowHint)
    , m_workspace(workspace)
    , m_view(store, [this] { onDismiss(); }, this)
{
    setMinimumSize(smallestSize);
    resize(defaultSize);
    setWindowTitle(m_view.windowTitle());
    connect(&m_view, &QWidget::windowTitleChanged, this, &QWidget::setWindowTitle);
    m_view.topBar()->installEventFilter(this);
    // The native window now, so that the first show finds everything but the pixels.
    winId();
    ensurePolished();
}

void ReaderPanel::show()
{
    if (!isVisible())
        moveToUsersScreen();
    m_view.refresh();
    m_workspace.prepareToShow(winId());
    QWidget::show();
    raise();
    m_workspace.activateIgnoringOtherApps(winId());
    m_view.setFocus();
}

void ReaderPanel::orderOut()
{
    hide();
}

void ReaderPanel::moveToUsersScreen()
{
    auto const* const atPointer = QGuiApplication::screenAt(QCursor::pos());
    auto const* const target = atPointer ? atPointer : QGuiApplication::primaryScreen();
    if (m_isPlaced && screen() == target)
        return;
    auto const available = target->availableGeometry();
    resize(size().boundedTo(available.size()));
    move(available.center() - QPoint(width() / 2, height() / 2));
    m_isPlaced = true;
}

void ReaderPanel::closeEvent(QCloseEvent* event)
{
    event->accept();
    hide();
    onClosed();
}

void ReaderPanel::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    m_view.resize(size());
}

void ReaderPanel::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape)
        onDismiss();
    else if (event->matches(QKeySequence::Quit))
        QCoreApplication::quit();
    else
        QWidget::keyPressEvent(event);
}

bool ReaderPanel::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::MouseButtonPress && static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton)
        return windowHandle()->startSystemMove();
    return QWidget::eventFilter(watched, event);
}

}
