#pragma once

#include "library/PreparedImage.h"
#include "rendering/ColorRole.h"

#include <QString>

#include <cstddef>
#include <optional>
#include <variant>

namespace Quillory {

// A font by what it is for. Sizes are points of the system, one logical pixel each.
struct FontAttribute {
    enum class Family { system, monospaced };
    enum class Weight { regular = 400, medium = 500, semibold = 600, bold = 700 };

    Family family = Family::system;
    double size = 16;
    Weight weight = Weight::regular;
    bool italic = false;

    bool operator==(FontAttribute const&) const = default;
};

// One of the program's own monochrome drawings, by name, in a colour.
struct Symbol {
    QString name;
    Color color;

    bool operator==(Symbol const&) const = default;
};

// A picture that stands in the text for one object character (U+FFFC). Known by this attribute, never by the character.
struct Attachment {
    std::variant<PreparedImage, Symbol> picture;
    double width = 0; // points
    double height = 0;

    bool operator==(Attachment const&) const = default;
};

// The looks of a run of characters. Paragraph styles are kept apart, see ParagraphStyle.
struct TextAttributes {
    FontAttribute font;
    Color color;
    std::optional<Color> background;
    double keycap = 0; // points that the background reaches beyond either side, as a key's outlined box; 0 for no box
    QString link; // empty for none
    bool strikethrough = false;
    double kern = 0; // points added after each character
    bool isGap = false; // the characters stand for nothing but room
    double baselineOffset = 0; // points, up
    std::optional<Attachment> attachment;

    bool operator==(TextAttributes const&) const = default;
};

std::size_t qHash(TextAttributes const& attributes, std::size_t seed = 0) noexcept;

}
