#pragma once

#include <QDateTime>

#include <algorithm>
#include <chrono>
#include <optional>

namespace Quillory::CheckSchedule {

// How often the feed is asked for, and how long a start is left in peace.
inline constexpr std::chrono::hours interval { 24 };
inline constexpr std::chrono::minutes afterStart { 2 };
// A check that failed may have met a network that was not up yet: it is tried again once.
inline constexpr std::chrono::minutes secondTry { 10 };

// How long to wait for the next check when `last` was begun at that time by the wall clock, in this process or another.
// Zero when it is due. A time still to come, by a clock that was wrong, counts as now.
inline std::chrono::nanoseconds untilDue(std::optional<QDateTime> const& last, QDateTime const& now)
{
    if (!last)
        return std::chrono::nanoseconds::zero();
    auto const passed = std::max(std::chrono::milliseconds(last->msecsTo(now)), std::chrono::milliseconds::zero());
    return std::max<std::chrono::nanoseconds>(interval - passed, std::chrono::nanoseconds::zero());
}

}
