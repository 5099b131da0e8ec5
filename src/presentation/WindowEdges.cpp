#include "presentation/WindowEdges.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QWidget>
#include <QWindow>

#include <utility>

namespace Quillory {

namespace {

Qt::CursorShape cursorOf(Qt::Edges edges)
{
    if (edges == (Qt::TopEdge | Qt::LeftEdge) || edges == (Qt::BottomEdge | Qt::RightEdge))
        return Qt::SizeFDiagCursor;
    if (edges == (Qt::TopEdge | Qt::RightEdge) || edges == (Qt::BottomEdge | Qt::LeftEdge))
        return Qt::SizeBDiagCursor;
    return edges & (Qt::LeftEdge | Qt::RightEdge) ? Qt::SizeHorCursor : Qt::SizeVerCursor;
}

}

WindowEdges::WindowEdges(QWidget& window, std::function<void(Qt::Edges, QPoint)> taken)
    : QObject(&window)
    , m_window(window)
    , m_taken(std::move(taken))
{
    // Ahead of the widgets, which fill the window to its border.
    m_window.windowHandle()->installEventFilter(this);
}

WindowEdges::~WindowEdges()
{
    showCursor({});
}

Qt::Edges WindowEdges::at(QPoint point, QRect const& frame)
{
    auto const left = point.x() - frame.left(), top = point.y() - frame.top();
    auto const right = frame.right() - point.x(), bottom = frame.bottom() - point.y();
    bool const isAtSide = left < edge || right < edge;
    bool const isAtEnd = top < edge || bottom < edge;
    if (!isAtSide && !isAtEnd)
        return {};
    auto const verticalReach = isAtSide ? corner : edge;
    auto const horizontalReach = isAtEnd ? corner : edge;
    Qt::Edges edges;
    edges.setFlag(Qt::LeftEdge, left < horizontalReach);
    edges.setFlag(Qt::RightEdge, right < horizontalReach);
    edges.setFlag(Qt::TopEdge, top < verticalReach);
    edges.setFlag(Qt::BottomEdge, bottom < verticalReach);
    return edges;
}

bool WindowEdges::eventFilter(QObject*, QEvent* event)
{
    switch (event->type()) {
    case QEvent::MouseMove: {
        auto const& move = static_cast<QMouseEvent const&>(*event);
        if (move.buttons() != Qt::NoButton)
            return false; // a drag that began elsewhere goes on
        auto const edges = at(move.position().toPoint(), m_window.contentsRect());
        showCursor(edges);
        return edges != Qt::Edges();
    }
    case QEvent::MouseButtonPress:
        return begin(static_cast<QMouseEvent const&>(*event));
    case QEvent::Leave:
    case QEvent::Hide:
        showCursor({});
        return false;
    default:
        return false;
    }
}

bool WindowEdges::begin(QMouseEvent const& press)
{
    auto const edges = at(press.position().toPoint(), m_window.contentsRect());
    if (press.button() != Qt::LeftButton || edges == Qt::Edges())
        return false;
    m_taken(edges, press.globalPosition().toPoint());
    return true;
}

// Over all others for as long as it is needed, so that what the pointer was over before keeps its own.
void WindowEdges::showCursor(Qt::Edges edges)
{
    auto const before = std::exchange(m_shown, edges);
    if (before == edges)
        return;
    if (before != Qt::Edges())
        QGuiApplication::restoreOverrideCursor();
    if (edges != Qt::Edges())
        QGuiApplication::setOverrideCursor(cursorOf(edges));
}

}
