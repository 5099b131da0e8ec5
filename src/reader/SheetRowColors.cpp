#include "reader/SheetRowColors.h"

#include "reader/Contrast.h"
#include "textlayout/ColorSet.h"

#include <QPalette>

namespace Quillory {

namespace {

constexpr double readable = 4.5;
constexpr double visible = 3;
constexpr float markShare = 0.65F;
constexpr float hoverShare = 0.08F;
constexpr int step = 106; // percent
constexpr ReaderColors::Dynamic warningColor { 0xFF9A5B00, 0xFFFFC266 };

QColor faded(QColor color, float share)
{
    color.setAlphaF(share);
    return color;
}

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
    auto const colors = ColorSet::fromPalette(palette);
    auto const chrome = ReaderColors::chrome.resolved(colors.appearance);
    auto const highlight = palette.color(QPalette::Active, QPalette::Highlight);
    SheetRowColors row;
    row.text = colors.label;
    row.mark = faded(colors.label, markShare);
    row.warning = warningColor.resolved(colors.appearance);
    row.hover = faded(colors.label, hoverShare);
    row.selectedText = palette.color(QPalette::Active, QPalette::HighlightedText);
    row.selection = groundFor(row.selectedText, highlight);
    row.focus = contrast(highlight, chrome) >= visible ? highlight : colors.label;
    return row;
}

}
