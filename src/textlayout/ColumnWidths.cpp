#include "textlayout/ColumnWidths.h"

#include <algorithm>
#include <numeric>

namespace Quillory {

namespace {

struct Bounds {
    double least = 0;
    double most = 0;
};

// Shares evenly within bounds whose least widths fit.
std::vector<double> shared(std::vector<Bounds> const& bounds, double available)
{
    std::vector<double> widths(bounds.size(), -1);
    auto rest = available;
    auto open = bounds.size();
    auto const settle = [&](auto widthFor) {
        for (bool changed = true; changed && open > 0;) {
            changed = false;
            auto const fair = rest / static_cast<double>(open);
            for (std::size_t column = 0; column < bounds.size(); ++column) {
                if (widths[column] >= 0)
                    continue;
                auto const width = widthFor(bounds[column], fair);
                if (width < 0)
                    continue;
                widths[column] = width;
                rest -= width;
                --open;
                changed = true;
            }
        }
    };
    // Who needs more than a fair share makes the share smaller for the rest, so that comes first.
    settle([](Bounds const& column, double fair) { return column.least >= fair ? column.least : -1; });
    settle([](Bounds const& column, double fair) { return column.most <= fair ? column.most : -1; });
    auto const fair = open > 0 ? rest / static_cast<double>(open) : 0;
    std::ranges::replace_if(widths, [](double width) { return width < 0; }, fair);
    return widths;
}

double sum(std::span<ColumnDemand const> demands, double ColumnDemand::* member)
{
    return std::accumulate(demands.begin(), demands.end(), 0.0,
        [member](double total, ColumnDemand const& demand) { return total + demand.*member; });
}

}

std::vector<double> fittedColumnWidths(std::span<ColumnDemand const> demands, double available)
{
    std::vector<double> widths;
    std::vector<Bounds> bounds;
    if (sum(demands, &ColumnDemand::widest) <= available) {
        std::ranges::transform(
            demands, std::back_inserter(widths), [](auto const& d) { return std::max(d.widest, d.floor); });
        return widths;
    }
    if (sum(demands, &ColumnDemand::narrowest) <= available) {
        std::ranges::transform(
            demands, std::back_inserter(bounds), [](auto const& d) { return Bounds { d.narrowest, d.widest }; });
        return shared(bounds, available);
    }
    std::ranges::transform(demands, std::back_inserter(bounds),
        [](auto const& d) { return Bounds { d.floor, std::max(d.floor, d.narrowest) }; });
    if (sum(demands, &ColumnDemand::floor) <= available)
        return shared(bounds, available);
    std::ranges::transform(demands, std::back_inserter(widths), &ColumnDemand::floor);
    return widths;
}

}
