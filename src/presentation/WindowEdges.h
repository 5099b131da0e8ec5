#pragma once

#include <QObject>
#include <QPoint>
#include <QSize>

#include <functional>

class QMouseEvent;
class QWidget;

namespace Quillory {

// Lets the user resize a window without a frame by its edges and corners. GUI thread only.
class WindowEdges final : public QObject {
    Q_OBJECT
public:
    // How far from its border the window is taken by the edge, in points, and how far along it by the corner.
    static constexpr int edge = 5;
    static constexpr int corner = 16;

    // `window` has its native window already. `willResize` is called as a resize by the user begins.
    WindowEdges(QWidget& window, std::function<void()> willResize);
    ~WindowEdges() override;

    // Which edges the point of a window of that size takes hold of; none inside.
    static Qt::Edges at(QPoint point, QSize size);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool begin(QMouseEvent const& press);
    void showCursor(Qt::Edges edges);

    QWidget& m_window;
    std::function<void()> m_willResize;
    Qt::Edges m_shown;
};

}
