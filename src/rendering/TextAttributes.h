#pragma once

#include "library/PreparedImage.h"
#include "rendering/ColorRole.h"

#include <QString>

#include <cstddef>
#include <optional>

namespace Quillory {

// A font by what it is for. Sizes are points of the system, one logical pixel each.
struct FontAttribute {
    enum class Family { system, monospaced };
    enum class Weight { regular = 400, semibold = 600, bold = 700 };

    Family family = Family::system;
    double size = 16;
    Weight weight = Weight::regular;
    bool italic = false;

    bool operator==(FontAttribute const&) const = default;
};

// A picture that stands in the text for one object character (U+FFFC). Known by this attribute, never by the character.
struct Attachment {
    PreparedImage image;
    double width = 0; // points
    double height = 0;

    bool operator==(Attachment const&) const = default;
};

// What a run of characters looks like. Paragraph styles are kept apart, see ParagraphStyle.
struct TextAttributes {
    FontAttribute font;
    Color color;
    std::optional<Color> background;
    QString link; // empty for none
    bool strikethrough = false;
    double kern = 0; // points added behind each character
    double baselineOffset = 0; // points, up
    std::optional<Attachment> attachment;

    bool operator==(TextAttributes const&) const = default;
};

std::size_t qHash(TextAttributes const& attributes, std::size_t seed = 0) noexcept;

}
