#include "reader/SheetRowColors.h"

#include "reader/Contrast.h"
#include "reader/WindowColors.h"

#include <QPalette>

namespace Quillory {

namespace {

constexpr double readable = 4.5;
constexpr int step = 106; // percent

// Darker or lighter, whichever of black and white the text stands out from more: that much is always to be had.
QColor groundFor(QColor const& text, QColor ground)
{
    bool const darkens = contrast(text, Qt::black) >= contrast(text, Qt::white);
    while (contrast(text, ground) < readable) {
        auto const next = QColor::fromRgb((darkens ? ground.darker(step) : ground.lighter(step)).rgb());
        if (next == ground)
            return darkens ? Qt::black : Qt::white;
        ground = next;
    }
    return ground;
}

}

SheetRowColors SheetRowColors::fromPalette(QPalette const& palette)
{
    auto const window = WindowColors::fromPalette(palette);
    SheetRowColors row;
    row.text = window.label;
    row.mark = window.secondary;
    row.warning = window.warning;
    row.hover = window.hover;
    row.selectedText = palette.color(QPalette::Active, QPalette::HighlightedText);
    row.selection = groundFor(row.selectedText, palette.color(QPalette::Active, QPalette::Highlight));
    row.focus = window.focus;
    return row;
}

}
