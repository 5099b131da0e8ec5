#include "linux/x11/ServerTime.h"

#include <algorithm>

namespace Quillory {

std::chrono::nanoseconds ServerTime::onMonotonicClock(std::uint32_t time, std::chrono::nanoseconds now)
{
    using std::chrono::milliseconds;
    if (!m_offset)
        m_offset = now - milliseconds(time);
    // Of all the times that these 32 bits can stand for, the one nearest to what the server's clock should say.
    auto const expected = std::chrono::floor<milliseconds>(now - *m_offset).count();
    auto const ahead = static_cast<std::int32_t>(time - static_cast<std::uint32_t>(expected));
    milliseconds const extended { expected + ahead };
    m_offset = std::min(*m_offset, now - extended);
    return extended + *m_offset;
}

}
