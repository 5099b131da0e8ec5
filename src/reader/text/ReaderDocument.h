#pragma once

#include "rendering/RenderedMarkdown.h"
#include "text/FoldedText.h"
#include "textlayout/TextLayout.h"

#include <optional>
#include <vector>

namespace Quillory {

// A rendered text with what a view makes of it while it is shown: heights, and the copy that find looks through.
// Costs little but these when nothing of it is on screen, so that it can be kept between shows.
struct ReaderDocument {
    ReaderDocument(RenderedMarkdown rendering, TextWidths const& widths, FontSet fonts, ColorSet const& colors);

    CopyTarget target(qsizetype index) const { return rendered.copyTargets[static_cast<std::size_t>(index)]; }
    qsizetype targetCount() const { return std::ssize(rendered.copyTargets); }
    // The first target that holds the character.
    std::optional<qsizetype> targetAt(qsizetype character) const;
    // The positions in `blocks` of those that meet the range, as first and behind last.
    std::pair<std::size_t, std::size_t> blocksIn(TextRange range) const;

    RenderedMarkdown rendered;
    std::vector<qsizetype> blocks; // positions of the block targets, in the order of the text
    TextLayout layout;
    FoldedText folded;
};

}
