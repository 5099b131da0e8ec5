#include "presentation/WindowDrag.h"

#include <QMouseEvent>
#include <QWidget>
#include <QWindow>

#include <algorithm>

namespace Quillory {

WindowDrag::WindowDrag(QWidget& window)
    : QObject(&window)
    , m_window(window)
{
}

void WindowDrag::begin(Qt::Edges edges, QPoint pointer, By by)
{
    end();
    if (by == By::windowManager && isTakenByWindowManager(edges))
        return;
    m_edges = edges;
    m_from = pointer;
    m_before = m_window.geometry();
    m_window.windowHandle()->installEventFilter(this);
}

bool WindowDrag::isTakenByWindowManager(Qt::Edges edges) const
{
    auto* const window = m_window.windowHandle();
    return edges == Qt::Edges() ? window->startSystemMove() : window->startSystemResize(edges);
}

void WindowDrag::end()
{
    m_window.windowHandle()->removeEventFilter(this);
}

// The edges that are not dragged stay, also when the window would become too small.
bool WindowDrag::eventFilter(QObject*, QEvent* event)
{
    if (event->type() == QEvent::MouseButtonRelease || event->type() == QEvent::Hide)
        end();
    if (event->type() != QEvent::MouseMove)
        return false;
    auto const way = static_cast<QMouseEvent*>(event)->globalPosition().toPoint() - m_from;
    auto frame = m_before;
    auto const least = m_window.minimumSize();
    if (m_edges == Qt::Edges())
        frame.translate(way);
    if (m_edges & Qt::LeftEdge)
        frame.setLeft(std::min(m_before.left() + way.x(), m_before.right() + 1 - least.width()));
    if (m_edges & Qt::RightEdge)
        frame.setRight(std::max(m_before.right() + way.x(), m_before.left() - 1 + least.width()));
    if (m_edges & Qt::TopEdge)
        frame.setTop(std::min(m_before.top() + way.y(), m_before.bottom() + 1 - least.height()));
    if (m_edges & Qt::BottomEdge)
        frame.setBottom(std::max(m_before.bottom() + way.y(), m_before.top() - 1 + least.height()));
    m_window.setGeometry(frame);
    return true;
}

}
