#include "reader/text/ReaderDocument.h"

#include <algorithm>
#include <ranges>

namespace Quillory {

ReaderDocument::ReaderDocument(
    RenderedMarkdown rendering, TextWidths const& widths, FontSet fonts, ColorSet const& colors)
    : rendered(std::move(rendering))
    , layout(rendered.text, widths, std::move(fonts), colors)
    , folded(rendered.text.string())
{
    rendered.text = layout.text(); // which may be another, and two would be kept
    for (qsizetype index = 0; index < targetCount(); ++index) {
        if (rendered.copyTargets.isBlock(index))
            blocks.push_back(index);
    }
}

std::optional<qsizetype> ReaderDocument::targetAt(qsizetype character) const
{
    auto const endsBehind = [&](qsizetype target) { return rendered.copyTargets.range(target).end() <= character; };
    auto const found = *std::ranges::partition_point(std::views::iota(qsizetype(0), targetCount()), endsBehind);
    if (found == targetCount() || !rendered.copyTargets.range(found).contains(character))
        return {};
    return found;
}

std::pair<std::size_t, std::size_t> ReaderDocument::blocksIn(TextRange range) const
{
    auto const endOf = [this](qsizetype block) { return rendered.copyTargets.range(block).end(); };
    auto const startOf = [this](qsizetype block) { return rendered.copyTargets.range(block).location; };
    auto const first = std::ranges::lower_bound(blocks, range.location, {}, endOf);
    auto const behind = std::ranges::lower_bound(first, blocks.end(), range.end(), {}, startOf);
    return { std::distance(blocks.begin(), first), std::distance(blocks.begin(), behind) };
}

}
