#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

namespace Quillory {

// Brings the times of the server's events onto the system's monotonic clock. The server counts milliseconds from a
// start of its own and starts over after 49.7 days. An event is never older than its arrival, so the smallest
// difference seen is the best guess at how far the two clocks are apart.
class ServerTime {
public:
    // `now` is when the event arrived. The result is never later than `now`.
    std::chrono::nanoseconds onMonotonicClock(std::uint32_t time, std::chrono::nanoseconds now);

private:
    std::optional<std::chrono::nanoseconds> m_offset;
};

}
