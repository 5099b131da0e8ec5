#pragma once

#include <QObject>
#include <QPoint>
#include <QRect>

class QWidget;

namespace Quillory {

// Moves or resizes a window as the pointer goes, from a press of the left button until it is let go. GUI thread only.
class WindowDrag final : public QObject {
    Q_OBJECT
public:
    // Who moves the window. A window manager takes pointer and keyboard for it, which it can't while one of our hot
    // keys has the keyboard.
    enum class By { windowManager, program };

    // `window` has its native window already.
    explicit WindowDrag(QWidget& window);

    // The button went down at `pointer`, in coordinates of the screen. Without edges the window moves as a whole. The
    // program takes over where the window manager declines.
    void begin(Qt::Edges edges, QPoint pointer, By by);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool isTakenByWindowManager(Qt::Edges edges) const;
    void end();

    QWidget& m_window;
    Qt::Edges m_edges;
    QPoint m_from;
    QRect m_before;
};

}
