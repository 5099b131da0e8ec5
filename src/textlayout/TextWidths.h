#pragma once

#include "rendering/ParagraphStyle.h"

namespace Quillory {

// The widths that a text is laid out for, in points. Prose and tables wrap at what is visible; code has the container,
// which may be wider and is then scrolled sideways.
struct TextWidths {
    double visible = 0;
    double container = 0;

    TextWidths(double width)
        : TextWidths(width, width)
    {
    }
    TextWidths(double visibleWidth, double containerWidth)
        : visible(visibleWidth)
        , container(containerWidth)
    {
    }

    double of(ParagraphStyle const& style) const
    {
        return style.wrapping == ParagraphStyle::Wrapping::atContainer ? container : visible;
    }

    bool operator==(TextWidths const&) const = default;
};

}
