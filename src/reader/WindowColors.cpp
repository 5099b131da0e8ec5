#include "reader/WindowColors.h"

#include "reader/Contrast.h"

#include <QPalette>

#include <algorithm>

namespace Quillory {

namespace {

constexpr double readable = 4.5;
constexpr double visible = 3;
constexpr ReaderColors::Dynamic warningColor { 0xFF9A5B00, 0xFFFFC266 };

QColor withAlpha(QColor color, float alpha)
{
    color.setAlphaF(alpha);
    return color;
}

QColor mixed(QColor const& above, QColor const& below, float share)
{
    auto const channel = [&](float one, float other) { return one * share + other * (1 - share); };
    return QColor::fromRgbF(channel(above.redF(), below.redF()), channel(above.greenF(), below.greenF()),
        channel(above.blueF(), below.blueF()));
}

// As little of the label's colour as stands out that much from both grounds.
QColor faintest(WindowColors const& colors, float leastShare, double leastContrast)
{
    for (auto share = leastShare; share < 1; share += 0.05F) {
        auto const color = mixed(colors.label, colors.surface, share);
        if (std::min(contrast(color, colors.chrome), contrast(color, colors.surface)) >= leastContrast)
            return color;
    }
    return colors.label;
}

}

WindowColors WindowColors::fromPalette(QPalette const& palette)
{
    auto const set = ColorSet::fromPalette(palette);
    auto const of = [&](ReaderColors::Dynamic const& color) { return color.resolved(set.appearance); };
    WindowColors colors;
    colors.chrome = of(ReaderColors::chrome);
    colors.surface = of(ReaderColors::surface);
    colors.separator = of(ReaderColors::codeBorder);
    colors.learning = of(ReaderColors::learningBackground);
    colors.label = set.label;
    colors.secondary = faintest(colors, 0.6F, readable);
    colors.outline = faintest(colors, 0.3F, visible);
    colors.warning = of(warningColor);
    auto const highlight = palette.color(QPalette::Active, QPalette::Highlight);
    auto const standsOut = std::min({ contrast(highlight, colors.chrome), contrast(highlight, colors.surface),
                               contrast(highlight, colors.learning) })
        >= visible;
    colors.focus = standsOut ? highlight : of(ReaderColors::commandKey);
    colors.accent = of({ ReaderColors::commandKey.light, ReaderColors::commandKey.light });
    colors.accentText = Qt::white;
    colors.hover = withAlpha(colors.label, 0.08F);
    colors.pressed = withAlpha(colors.label, 0.18F);
    return colors;
}

}
