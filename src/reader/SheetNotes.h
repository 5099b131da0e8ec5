#pragma once

#include "reader/BannerLabel.h"
#include "reader/ReaderWindowState.h"

namespace Quillory {

// A line or more over the text with a warning sign: about the sheet's icons, or why it could not be read. Hidden while
// there is nothing to say. GUI thread only.
class SheetNotes : public QWidget {
    Q_OBJECT
public:
    SheetNotes(char const* name, QWidget* parent);

    void show(QString const& text);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    BannerLabel* m_text;
};

}
