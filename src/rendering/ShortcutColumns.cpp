#include "rendering/ShortcutColumns.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace Quillory {

namespace {

constexpr double columnWidthInSizes = 23; // a column takes that many times the text size
constexpr double narrowestColumn = 300;
constexpr qsizetype mostColumns = 6;
constexpr double besideContent = 30;
constexpr double narrowestContent = 100;

// The height of a section is estimated in lines.
constexpr double widthOfCharacter = 0.55; // of the text size
constexpr double shortestLine = 12;       // characters

qsizetype columnCount(double width, double textSize, qsizetype sections)
{
    auto const fitting = std::trunc(width / std::max(textSize * columnWidthInSizes, narrowestColumn));
    auto const most = static_cast<double>(std::min(sections, mostColumns));
    return static_cast<qsizetype>(std::max(std::min(fitting, most), 1.0));
}

// Fills one column after the other up to its share of what is left.
std::vector<qsizetype> balanced(std::vector<double> const& heights, qsizetype columns)
{
    std::vector<qsizetype> counts;
    auto rest = std::accumulate(heights.begin(), heights.end(), 0.0);
    std::size_t next = 0;
    for (auto columnsAfter = columns - 1; columnsAfter >= 0; --columnsAfter) {
        auto const target = rest / static_cast<double>(columnsAfter + 1);
        auto const first = next;
        double share = 0;
        while (next < heights.size()) {
            share += heights[next++];
            auto const sectionsLeft = static_cast<qsizetype>(heights.size() - next);
            if (columnsAfter >= sectionsLeft || (columnsAfter > 0 && share >= target))
                break;
        }
        counts.push_back(static_cast<qsizetype>(next - first));
        rest -= share;
    }
    return counts;
}

}

ShortcutColumns ShortcutColumns::arrange(std::span<SectionExtent const> sections, double width, double textSize)
{
    auto const columns = columnCount(width, textSize, std::ssize(sections));
    auto const contentWidth = std::max(width / static_cast<double>(columns) - besideContent, narrowestContent);
    auto const lineLength = std::max(contentWidth / (textSize * widthOfCharacter), shortestLine);

    std::vector<double> heights;
    heights.reserve(sections.size());
    for (auto const& section : sections)
        heights.push_back(section.lines(lineLength));
    return { contentWidth, balanced(heights, columns) };
}

}
