#include "linux/x11/ServerTime.h"
#include "linux/x11/X11Clock.h"
#include "support/Test.h"

namespace Quillory {
namespace {

TEST(ServerTime, Times_keep_their_distances_over_the_wrap_and_whatever_they_took_to_arrive)
{
    // A server whose clock is far behind ours and starts over between the second and the third event.
    constexpr std::uint32_t first = 0xffffff00U;
    constexpr std::chrono::nanoseconds start = 24h * 30;
    struct Case {
        std::uint32_t after; // milliseconds since the first event
        std::chrono::milliseconds delay; // from the event to its arrival
        std::chrono::milliseconds expected; // since the first event as it was mapped
    };
    ServerTime time;
    auto const mapped = time.onMonotonicClock(first, start + 5ms);
    EXPECT_EQ(mapped, start + 5ms);
    for (auto const& [after, delay, expected] : std::initializer_list<Case> { { 200, 900ms, 200ms },
             { 300, 1ms, 296ms }, // came quicker than any before: the clocks are nearer than was thought
             { 600, 1ms, 596ms }, { 600 + 3'000'000'000U, 1ms, 3'000'000'000ms + 596ms } }) {
        SCOPED_TRACE(after);
        auto const arrival = start + std::chrono::milliseconds(after) + delay;
        auto const result = time.onMonotonicClock(first + after, arrival);
        EXPECT_EQ(result - mapped, expected);
        EXPECT_LE(result, arrival);
    }
}

TEST(X11Clock, Later_times_win_across_the_wrap)
{
    X11Clock clock;
    for (X11Clock::Time const time : { 0xffffff00U, 0xfffffff0U, 0U, 0x10U, 0xfffffff1U })
        clock.note(time);
    EXPECT_EQ(clock.latest(), 0x10U);
}

}
}
