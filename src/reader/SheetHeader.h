#pragma once

#include "reader/ReaderWindowState.h"

#include <QWidget>

class QLabel;

namespace Quillory {

class BarButton;
class ElidedLabel;

// The line over the text: the sheet's icon, its title, and the button for find. GUI thread only.
class SheetHeader : public QWidget {
    Q_OBJECT
public:
    explicit SheetHeader(QWidget* parent);

    void refresh(ReaderWindowState const& state);
    void setTitleFont(QFont const& font);
    // Draws a line under the title: some of the text has gone below it.
    void setScrolled(bool isScrolled);

Q_SIGNALS:
    void findToggled();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void showIcon(ReaderWindowState::Icon const& icon);

    QLabel* m_icon;
    ElidedLabel* m_title;
    BarButton* m_find;
    std::optional<ReaderWindowState::Icon> m_shown;
    bool m_isScrolled = false;
};

}
