#pragma once

#include <QWidget>

namespace Quillory {

// Rounds the corners of a window that can shine through: takes what lies outside of an arc away from all that the window
// has drawn there, and draws the outline along it, over the window's shadow where its contents leave margins for one. Square
// again when hidden. GUI thread only.
class PanelCorners final : public QObject {
    Q_OBJECT
public:
    static constexpr int radius = 10; // points

    // Over all children that the window has by then.
    explicit PanelCorners(QWidget& window);

    void setVisible(bool isVisible);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void place();

    QWidget& m_window;
    QList<QWidget*> m_corners;
};

}
