#pragma once

#include <QPointer>
#include <QWidget>

class QLabel;
class QSlider;

namespace Quillory {

// Sets the size of the text, under the button that opened it. A part of the window and no window of its own, so that
// neither keys nor pointer are taken from anybody. Goes by Escape, by a press outside and with its window. GUI thread
// only.
class TextSizePopover : public QWidget {
    Q_OBJECT
public:
    // `opener` opens it and, by a further press, closes it.
    TextSizePopover(QWidget& opener, QWidget* parent);

    void setTextSize(double size);
    void open();
    void close();

Q_SIGNALS:
    void textSizeChosen(double size);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void place();

    QWidget& m_opener;
    QLabel* m_value;
    QSlider* m_slider;
    QPointer<QWidget> m_hadKeyboard;
};

}
