#include "rendering/ShortcutColumns.h"

#include "text/Graphemes.h"

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
constexpr double linesOfTitle = 3;
constexpr double linesBesideEntry = 1.5;
constexpr double linesOfStep = 0.3;

qsizetype columnCount(double width, double textSize, qsizetype sections)
{
    auto const fitting = std::trunc(width / std::max(textSize * columnWidthInSizes, narrowestColumn));
    auto const most = static_cast<double>(std::min(sections, mostColumns));
    return static_cast<qsizetype>(std::max(std::min(fitting, most), 1.0));
}

double estimatedHeight(ShortcutSheet::Entry const& entry, double lineLength)
{
    auto const characters = graphemeCount(entry.title) + graphemeCount(entry.text.value_or(QString()));
    auto const steps = std::accumulate(entry.shortcuts.begin(), entry.shortcuts.end(), qsizetype(0),
        [](qsizetype sum, auto const& shortcut) { return sum + shortcut.steps.size(); });
    return std::ceil(static_cast<double>(characters) / lineLength) + linesBesideEntry
        + linesOfStep * static_cast<double>(steps);
}

double estimatedHeight(ShortcutSheet::Section const& section, double lineLength)
{
    auto const characters = graphemeCount(section.description.value_or(QString()));
    auto const head = static_cast<double>(characters) / lineLength + linesOfTitle;
    return std::accumulate(section.entries.begin(), section.entries.end(), head,
        [lineLength](double sum, auto const& entry) { return sum + estimatedHeight(entry, lineLength); });
}

// Fills one column after the other up to its share of what is left.
std::vector<qsizetype> balanced(std::vector<double> const& heights, qsizetype columns)
{
    std::vector<qsizetype> counts;
    auto rest = std::accumulate(heights.begin(), heights.end(), 0.0);
    std::size_t next = 0;
    for (auto columnsBehind = columns - 1; columnsBehind >= 0; --columnsBehind) {
        auto const target = rest / static_cast<double>(columnsBehind + 1);
        auto const first = next;
        double share = 0;
        while (next < heights.size()) {
            share += heights[next++];
            auto const sectionsLeft = static_cast<qsizetype>(heights.size() - next);
            if (columnsBehind >= sectionsLeft || (columnsBehind > 0 && share >= target))
                break;
        }
        counts.push_back(static_cast<qsizetype>(next - first));
        rest -= share;
    }
    return counts;
}

}

ShortcutColumns ShortcutColumns::arrange(ShortcutSheet const& sheet, double width, double textSize)
{
    auto const columns = columnCount(width, textSize, sheet.sections.size());
    auto const contentWidth = std::max(width / static_cast<double>(columns) - besideContent, narrowestContent);
    auto const lineLength = std::max(contentWidth / (textSize * widthOfCharacter), shortestLine);

    std::vector<double> heights;
    heights.reserve(static_cast<std::size_t>(sheet.sections.size()));
    for (auto const& section : sheet.sections)
        heights.push_back(estimatedHeight(section, lineLength));
    return { contentWidth, balanced(heights, columns) };
}

}
