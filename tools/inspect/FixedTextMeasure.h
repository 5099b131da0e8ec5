#pragma once

#include "rendering/TextMeasure.h"

namespace Quillory {

// Every UTF-16 unit is half as wide as its font is high, or 0.6 times in the monospaced face: the same on every machine.
class FixedTextMeasure final : public TextMeasure {
public:
    double width(QStringView text, FontAttribute const& font) const override
    {
        auto const share = font.family == FontAttribute::Family::monospaced ? 0.6 : 0.5;
        return share * font.size * static_cast<double>(text.size());
    }
};

}
