#pragma once

#include "rendering/AttributedText.h"
#include "rendering/CopyTargets.h"

namespace Quillory {

// The result of both renderers: text, and its targets in the order of the text.
struct RenderedMarkdown {
    AttributedText text;
    CopyTargets copyTargets;

    bool operator==(RenderedMarkdown const&) const = default;
};

}
