#include "reader/ReaderDocument.h"

#include <algorithm>

namespace Quillory {

ReaderDocument::ReaderDocument(RenderedMarkdown rendering, double width, FontSet fonts, ColorSet const& colors)
    : rendered(std::move(rendering))
    , layout(rendered.text, width, std::move(fonts), colors)
    , folded(rendered.text.string())
{
    rendered.text = layout.text(); // which may be another, and two would be kept
    for (qsizetype index = 0; index < targetCount(); ++index) {
        if (target(index).isBlock)
            blocks.push_back(index);
    }
}

std::optional<qsizetype> ReaderDocument::targetAt(qsizetype character) const
{
    auto const endsBehind = [character](CopyTarget const& target) {
        return target.range.location + target.range.length <= character;
    };
    auto const found = std::ranges::partition_point(rendered.copyTargets, endsBehind);
    if (found == rendered.copyTargets.end() || !found->range.contains(character))
        return {};
    return std::distance(rendered.copyTargets.begin(), found);
}

std::pair<std::size_t, std::size_t> ReaderDocument::blocksIn(TextRange range) const
{
    auto const endOf = [this](qsizetype block) { return target(block).range.location + target(block).range.length; };
    auto const startOf = [this](qsizetype block) { return target(block).range.location; };
    auto const first = std::ranges::lower_bound(blocks, range.location, {}, endOf);
    auto const behind = std::ranges::lower_bound(first, blocks.end(), range.end(), {}, startOf);
    return { std::distance(blocks.begin(), first), std::distance(blocks.begin(), behind) };
}

}
