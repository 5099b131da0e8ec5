#pragma once

#include "textlayout/ColorSet.h"

#include <QColor>

class QPalette;

namespace Quillory {

// The colours of the window around the text, for one appearance.
struct WindowColors {
    QColor chrome;       // bars and sidebar
    QColor surface;      // under the text
    QColor separator;
    QColor learning;     // Learning Mode while it is on
    QColor label;
    QColor secondary;    // less important text: at least 4.5:1 on both grounds
    QColor warning;      // likewise
    QColor outline;      // of the window, and handles: at least 3:1 on both grounds
    QColor focus;        // the ring around what has the keyboard: at least 3:1 on both grounds
    QColor accent;       // the one button that goes on
    QColor accentText;   // at least 4.5:1 on it
    QColor hover;        // covers a ground in part, as the next does
    QColor pressed;

    static WindowColors fromPalette(QPalette const& palette);
};

}
