#pragma once

#include <QPointer>
#include <QWidget>

namespace Quillory {

// Lies over a view, dims it and has `content` in its middle, like a dialog, but a part of the window, so that no window
// manager can put it behind. Lives until it is closed, and gives the keyboard back then. GUI thread only.
class SheetOverlay : public QWidget {
    Q_OBJECT
public:
    // Belongs to the view, and the content, which gets the keyboard, to it.
    SheetOverlay(QWidget* content, QWidget& view);

    void close();

Q_SIGNALS:
    void closed();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    // What is below gets none of them.
    void mousePressEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    QPointer<QWidget> m_hadKeyboard;
};

}
