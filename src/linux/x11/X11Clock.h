#pragma once

#include <cstdint>

namespace Quillory {

// The server time of the user's latest key or click that the program acts on. Window managers weigh it against the
// times of other windows before they hand over the front. Shared by all who see such events; main thread only.
class X11Clock {
public:
    // Server time: milliseconds, which wrap round after 49.7 days; 0 is no time.
    using Time = std::uint32_t;

    void note(Time time)
    {
        if (time != 0 && (m_latest == 0 || isLater(time, m_latest)))
            m_latest = time;
    }

    // 0 as long as nothing was noted.
    Time latest() const { return m_latest; }

    static bool isLater(Time a, Time b) { return static_cast<std::int32_t>(a - b) > 0; }

private:
    Time m_latest = 0;
};

}
