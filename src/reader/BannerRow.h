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

    // The height of buttons below the text, also while they have no room.
    int wantedByButtons() const;
    // Elsewhere than below the text they always have room.
    void setHasRoomForButtons(bool hasRoom);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void arrange();
    bool areOffered() const;
    bool areBelow() const;
    void showButtons();

    QWidget* m_buttons;
    QBoxLayout* m_buttonLayout;
    QBoxLayout* m_layout;
    bool m_hasRoom = true; // below the text
};

}
