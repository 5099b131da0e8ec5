#pragma once

#include <QObject>
#include <QPoint>
#include <QRect>

#include <functional>

class QMouseEvent;
class QWidget;

namespace Quillory {

// The edges and corners by which the user resizes a window without a frame. GUI thread only.
class WindowEdges final : public QObject {
    Q_OBJECT
public:
    // How far from its border the window is taken by the edge, in points, and how far along it by the corner.
    static constexpr int edge = 5;
    static constexpr int corner = 16;

    // Of the window's contents; `window` has its native window already, and keeps it. `taken` is called when the user presses the left button on edges, with
    // where the pointer is on the screen.
    WindowEdges(QWidget& window, std::function<void(Qt::Edges, QPoint pointer)> taken);
    ~WindowEdges() override;

    // Which edges of that frame the point takes hold of, also from outside; none further in.
    static Qt::Edges at(QPoint point, QRect const& frame);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool begin(QMouseEvent const& press);
    void showCursor(Qt::Edges edges);

    QWidget& m_window;
    std::function<void(Qt::Edges, QPoint)> m_taken;
    Qt::Edges m_shown;
};

}
