#include "textlayout/HeightStack.h"

#include <algorithm>

namespace Quillory {

HeightStack::HeightStack(std::vector<Extent> const& extents)
{
    std::vector<double> heights;
    heights.reserve(extents.size());
    m_exact.reserve(extents.size());
    for (auto const& [height, exact] : extents) {
        heights.push_back(height);
        m_exact.push_back(exact);
    }
    m_heights = HeightTree(std::move(heights));
    m_inexact = std::ranges::count(m_exact, false);
}

void HeightStack::set(qsizetype index, Extent extent)
{
    m_heights.set(index, extent.height);
    if (extent.exact && !isExact(index)) {
        m_exact[static_cast<std::size_t>(index)] = true;
        --m_inexact;
    }
}

HeightStack::Place HeightStack::placeAt(double y) const
{
    auto const index = indexAt(y);
    return { index, y - top(index), height(index) };
}

double HeightStack::offsetOf(Place const& place) const
{
    auto const height = this->height(place.index);
    if (height == place.height || place.offset <= 0 || place.height <= 0)
        return place.offset;
    return place.offset * height / place.height;
}

}
