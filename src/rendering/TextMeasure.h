#pragma once

#include "rendering/TextAttributes.h"

#include <QStringView>

namespace Quillory {

// How much room text takes. Implemented by the layout, which knows the faces that stand for the fonts.
class TextMeasure {
public:
    virtual ~TextMeasure() = default;

    // The width of the text on one line, in points.
    virtual double width(QStringView text, FontAttribute const& font) const = 0;
};

}
