#pragma once

#include "rendering/ColorRole.h"
#include "rendering/ReaderColors.h"

#include <QColor>

class QPalette;

namespace Quillory {

// The colours of one appearance, as the desktop's palette has them.
struct ColorSet {
    QColor label;
    QColor secondaryLabel;
    QColor quaternaryLabel;
    QColor separator;
    QColor link;
    ReaderColors::Appearance appearance = ReaderColors::Appearance::light;

    // Whether all that is shown is dark or light is decided here alone.
    static ColorSet fromPalette(QPalette const& palette);

    // The role's colour, covering as much as the colour's alpha says.
    QColor resolved(Color const& color) const;

    bool operator==(ColorSet const&) const = default;
};

}
