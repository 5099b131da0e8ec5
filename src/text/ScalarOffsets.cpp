#include "text/ScalarOffsets.h"

#include <algorithm>

namespace Quillory {

ScalarOffsets::ScalarOffsets(QStringView text)
{
    for (qsizetype unit = 0; unit + 1 < text.size(); ++unit) {
        if (text[unit].isHighSurrogate() && text[unit + 1].isLowSurrogate()) {
            m_pairs.push_back({ unit, unit - std::ssize(m_pairs) });
            ++unit;
        }
    }
}

qsizetype ScalarOffsets::scalarAt(qsizetype unit) const
{
    auto const pair = std::ranges::lower_bound(m_pairs, unit - 1, {}, &Pair::unit);
    auto const isInside = pair != m_pairs.end() && pair->unit == unit - 1;
    return unit - std::distance(m_pairs.begin(), pair) - (isInside ? 1 : 0);
}

qsizetype ScalarOffsets::unitAt(qsizetype scalar) const
{
    return scalar + std::distance(m_pairs.begin(), std::ranges::lower_bound(m_pairs, scalar, {}, &Pair::scalar));
}

}
