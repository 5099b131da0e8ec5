#pragma once

#include "rendering/AttributedText.h"
#include "rendering/CopyTargets.h"

namespace Quillory {

// What both renderers make of a sheet: text, and its targets in the order of the text.
struct RenderedMarkdown {
    AttributedText text;
    CopyTargets copyTargets;

    bool operator==(RenderedMarkdown const&) const = default;
};

}
