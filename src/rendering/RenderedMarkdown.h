#pragma once

#include "rendering/AttributedText.h"
#include "rendering/CopyTarget.h"

#include <vector>

namespace Quillory {

// What both renderers make of a sheet: text, and its targets in the order of the text.
struct RenderedMarkdown {
    AttributedText text;
    std::vector<CopyTarget> copyTargets;

    bool operator==(RenderedMarkdown const&) const = default;
};

}
