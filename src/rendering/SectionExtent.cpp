#include "rendering/SectionExtent.h"

#include "text/Graphemes.h"

#include <cmath>
#include <numeric>

namespace Quillory {

namespace {

constexpr double linesOfTitle = 3;
constexpr double linesBesideEntry = 1.5;
constexpr double linesOfStep = 0.3;

SectionExtent::Entry extentOf(ShortcutSheet::Entry const& entry)
{
    auto const steps = std::accumulate(entry.shortcuts.begin(), entry.shortcuts.end(), qsizetype(0),
        [](qsizetype sum, auto const& shortcut) { return sum + shortcut.steps.size(); });
    return { graphemeCount(entry.title) + graphemeCount(entry.text.value_or(QString())),
        linesBesideEntry + linesOfStep * static_cast<double>(steps) };
}

}

std::vector<SectionExtent> SectionExtent::ofAll(ShortcutSheet const& sheet)
{
    std::vector<SectionExtent> extents;
    for (auto const& section : sheet.sections) {
        auto& extent = extents.emplace_back();
        extent.characters = graphemeCount(section.description.value_or(QString()));
        for (auto const& entry : section.entries)
            extent.entries.push_back(extentOf(entry));
    }
    return extents;
}

double SectionExtent::lines(double lineLength) const
{
    auto const head = static_cast<double>(characters) / lineLength + linesOfTitle;
    return std::accumulate(entries.begin(), entries.end(), head, [lineLength](double sum, Entry const& entry) {
        return sum + std::ceil(static_cast<double>(entry.characters) / lineLength) + entry.lines;
    });
}

}
