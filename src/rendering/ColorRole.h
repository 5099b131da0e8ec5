#pragma once

#include <QLatin1StringView>

namespace Quillory {

// A colour by what it is for. Values are resolved when painting, so that they follow the appearance at once.
enum class ColorRole {
    label,
    secondaryLabel,
    quaternaryLabel,
    separator,

    // The reader's own, see ReaderColors.
    codeBackground,
    functionKey,
    controlKey,
    optionKey,
    shiftKey,
    commandKey,
    plainKey, // of a shortcut, no modifier
};

// The system's name of the role, "labelColor", or the palette's, "shift".
QLatin1StringView colorRoleName(ColorRole role);

// A role, and how much of it covers what lies below: 0 nothing, 1 all.
struct Color {
    ColorRole role = ColorRole::label;
    double alpha = 1;

    bool operator==(Color const&) const = default;
};

}
