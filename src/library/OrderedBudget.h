#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <iterator>
#include <limits>
#include <map>
#include <utility>

namespace Quillory {

// Bytes for things that stand in an order and become known in any: those at the front have them, and what does not fit
// is let go from the first on that passes the limit, whichever came when.
class OrderedBudget {
public:
    // `letGo` is told of each place whose thing is not to be kept.
    OrderedBudget(std::uint64_t limit, std::function<void(std::size_t)> letGo)
        : m_limit(limit)
        , m_letGo(std::move(letGo))
    {
    }

    // Whether a thing at this place could still be kept.
    bool admits(std::size_t place) const { return place < m_end; }

    void charge(std::size_t place, std::uint64_t bytes)
    {
        m_charged[place] = bytes;
        m_used += bytes;
        while (m_used > m_limit || (!m_charged.empty() && !admits(m_charged.rbegin()->first))) {
            auto const last = std::prev(m_charged.end());
            auto const [at, size] = *last;
            m_charged.erase(last);
            m_used -= size;
            m_end = std::min(m_end, at);
            m_letGo(at);
        }
    }

private:
    std::uint64_t m_limit;
    std::function<void(std::size_t)> m_letGo;
    std::map<std::size_t, std::uint64_t> m_charged;
    std::uint64_t m_used = 0;
    std::size_t m_end = std::numeric_limits<std::size_t>::max(); // the first place that nothing is kept at
};

}
