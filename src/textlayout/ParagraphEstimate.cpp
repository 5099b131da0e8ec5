#include "textlayout/ParagraphEstimate.h"

#include <algorithm>
#include <cmath>

namespace Quillory {

namespace {

// Plain ASCII that takes at most `available`. Reads no further than it has to.
bool certainlyFits(QStringView string, LayoutContext::Metrics const& metrics, double available)
{
    auto const most = (available - LayoutContext::kerningSlack) / LayoutContext::kerningShare;
    double width = 0;
    for (auto const character : string) {
        auto const index = static_cast<std::size_t>(character.unicode()) - u' ';
        if (index >= metrics.asciiWidths.size())
            return false;
        width += metrics.asciiWidths[index];
        if (width > most)
            return false;
    }
    return true;
}

}

ParagraphEstimate estimatedParagraph(LayoutContext const& context, ParagraphStretch const& stretch,
    AttributedText::Run const& run, ParagraphStyle const& style, double width)
{
    auto const& metrics = context.metrics(run);
    auto const& string = context.text().string();
    auto const length = static_cast<double>(stretch.range.length);
    auto const trailing = style.tailIndent > 0 ? std::min(style.tailIndent, width) : width + style.tailIndent;
    auto const available = std::max(1.0, trailing - std::max(style.headIndent, style.firstLineHeadIndent));
    // The line feed's font counts as well.
    auto const after = std::min(stretch.range.end() + 1, string.size());
    auto const fits = metrics.plain && run.location + run.length >= after
        && certainlyFits(QStringView(string).sliced(stretch.range.location, stretch.range.length), metrics, available);

    auto const lines = fits ? 1 : std::max(1.0, std::ceil(length * metrics.averageWidth / available));
    auto const lineHeight = std::max(metrics.lineHeight, style.minimumLineHeight) + style.lineSpacing;
    auto const spacing = (stretch.startsParagraph ? style.paragraphSpacingBefore : 0)
        + (stretch.endsParagraph ? style.paragraphSpacing : 0);
    return { lines * lineHeight + spacing, fits };
}

double estimatedLines(QStringView string, double lettersOfLine)
{
    double lines = 0;
    qsizetype start = 0;
    auto const add = [&](qsizetype end) {
        auto const length = static_cast<double>(end - start);
        lines += length <= lettersOfLine ? 1 : std::ceil(length / lettersOfLine);
        start = end + 1;
    };
    for (qsizetype position = 0; position < string.size(); ++position) {
        if (string[position] == u'\n')
            add(position);
    }
    if (start < string.size())
        add(string.size());
    return lines;
}

}
