#include "textlayout/ColorSet.h"

#include <QPalette>

namespace Quillory {

namespace {

QColor faded(QColor color, double share)
{
    color.setAlphaF(static_cast<float>(color.alphaF() * share));
    return color;
}

// Many dark palettes keep the links of a light one, which can't be read on dark.
QColor readable(QColor const& link, bool dark)
{
    constexpr float darkest = 0.65F;
    if (!dark || link.lightnessF() >= darkest)
        return link;
    return QColor::fromHslF(link.hslHueF(), link.hslSaturationF(), darkest + 0.05F);
}

QColor roleColor(ColorSet const& colors, ColorRole role)
{
    switch (role) {
    case ColorRole::label:
        return colors.label;
    case ColorRole::secondaryLabel:
        return colors.secondaryLabel;
    case ColorRole::quaternaryLabel:
        return colors.quaternaryLabel;
    case ColorRole::separator:
        return colors.separator;
    case ColorRole::codeBackground:
        return ReaderColors::codeBackground.resolved(colors.appearance);
    case ColorRole::functionKey:
        return ReaderColors::functionKey.resolved(colors.appearance);
    case ColorRole::controlKey:
        return ReaderColors::controlKey.resolved(colors.appearance);
    case ColorRole::optionKey:
        return ReaderColors::optionKey.resolved(colors.appearance);
    case ColorRole::shiftKey:
        return ReaderColors::shiftKey.resolved(colors.appearance);
    case ColorRole::commandKey:
        return ReaderColors::commandKey.resolved(colors.appearance);
    case ColorRole::plainKey:
        return ReaderColors::plainKey.resolved(colors.appearance);
    }
    Q_UNREACHABLE();
}

}

ColorSet ColorSet::fromPalette(QPalette const& palette)
{
    auto const text = palette.color(QPalette::Active, QPalette::Text);
    auto const dark = text.lightnessF() > palette.color(QPalette::Active, QPalette::Base).lightnessF();
    ColorSet colors;
    colors.label = text;
    colors.secondaryLabel = faded(text, 0.6);
    colors.quaternaryLabel = text; // faded by those who use it
    colors.separator = faded(text, 0.3);
    colors.link = readable(palette.color(QPalette::Active, QPalette::Link), dark);
    colors.appearance = dark ? ReaderColors::Appearance::dark : ReaderColors::Appearance::light;
    return colors;
}

QColor ColorSet::resolved(Color const& color) const
{
    return faded(roleColor(*this, color.role), color.alpha);
}

}
