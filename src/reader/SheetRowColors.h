#pragma once

#include <QColor>

class QPalette;

namespace Quillory {

// The colours of the sidebar's rows. The same whether the window has the keyboard or not.
struct SheetRowColors {
    QColor text;
    QColor mark;         // of a pin: at least 4.5:1 on the sidebar
    QColor warning;      // likewise
    QColor hover;        // over the sidebar's ground
    QColor selection;    // the desktop's, darkened or lightened until its text is readable
    QColor selectedText; // at least 4.5:1 on it; its marks too
    QColor focus;        // the ring around the row with the keyboard: at least 3:1 on the sidebar

    static SheetRowColors fromPalette(QPalette const& palette);
};

}
