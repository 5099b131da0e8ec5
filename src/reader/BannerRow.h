#pragma once

#include <QWidget>

class QBoxLayout;

namespace Quillory {

class BarButton;

// What a banner says and the buttons that help with it: beside it, and below it where that would leave it too little
// room. GUI thread only.
class BannerRow : public QWidget {
    Q_OBJECT
public:
    // Takes the text over.
    BannerRow(QWidget* text, QWidget* parent);

    BarButton* addButton(QString const& text, QString const& help);
    void offer(BarButton& button, bool isOffered);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void arrange();

    QWidget* m_buttons;
    QBoxLayout* m_buttonLayout;
    QBoxLayout* m_layout;
};

}
