#include "input/ModifierGestureRecognizer.h"

#include <gmock/gmock.h>

namespace Quillory {
namespace {

using namespace std::chrono_literals;
using Recognizer = ModifierGestureRecognizer;
using State = Recognizer::State;
using Action = Recognizer::Action;

constexpr std::uint16_t left = 56;
constexpr std::uint16_t right = 60;
constexpr auto tick = 1ns;
// Late enough that seconds in a double would be wrong by more than a tick.
constexpr Recognizer::Time start = 24h * 400;

TEST(ModifierGestureRecognizer, Every_transition_of_every_state_is_the_one_of_the_table)
{
    enum class Step { down, up, elapsed, cancel };
    struct Case {
        char const* what;
        State before;
        Step step;
        std::uint16_t key;
        Recognizer::Time after; // since `start`
        State expected;
        std::optional<Action> result = {};
    };
    Recognizer::Idle const idle;
    Recognizer::FirstDown const firstDown { left, start };
    Recognizer::FirstUp const firstUp { left, start };
    Recognizer::SecondDown const secondDown { left, start };
    Recognizer::Active const active { left };
    auto const at300 = start + 300ms;
    std::vector<Case> const cases {
        { "idle, press", idle, Step::down, left, 300ms, Recognizer::FirstDown { left, at300 } },
        { "idle, release", idle, Step::up, left, 0ms, idle },
        { "tap at the limit", firstDown, Step::up, left, 300ms, Recognizer::FirstUp { left, at300 } },
        { "tap one tick late", firstDown, Step::up, left, 300ms + tick, idle },
        { "other side let go", firstDown, Step::up, right, 10ms, idle },
        { "pressed again without release", firstDown, Step::down, left, 10ms, idle },
        { "other side pressed as well", firstDown, Step::down, right, 10ms, idle },
        { "second press at the limit", firstUp, Step::down, left, 300ms, Recognizer::SecondDown { left, at300 } },
        { "second press one tick late", firstUp, Step::down, left, 300ms + tick, idle },
        { "second press on the other side", firstUp, Step::down, right, 10ms, idle },
        { "second release", firstUp, Step::up, left, 10ms, idle },
        { "let go too early", secondDown, Step::up, left, 10ms, idle },
        { "pressed once more", secondDown, Step::down, left, 10ms, idle },
        { "other side during the wait", secondDown, Step::up, right, 10ms, idle },
        { "other side pressed during the wait", secondDown, Step::down, right, 10ms, idle },
        { "let go", active, Step::up, left, 10ms, idle, Action::end },
        { "pressed while active", active, Step::down, left, 10ms, idle, Action::end },
        { "other side while active", active, Step::down, right, 10ms, idle, Action::end },
        { "other side let go while active", active, Step::up, right, 10ms, idle, Action::end },
        { "held to the limit", secondDown, Step::elapsed, 0, 350ms, active, Action::begin },
        { "one tick short", secondDown, Step::elapsed, 0, 350ms - tick, secondDown },
        { "elapsed after the first press", firstDown, Step::elapsed, 0, 1h, firstDown },
        { "elapsed after the first tap", firstUp, Step::elapsed, 0, 1h, firstUp },
        { "elapsed while active", active, Step::elapsed, 0, 1h, active },
        { "elapsed while idle", idle, Step::elapsed, 0, 1h, idle },
        { "cancel idle", idle, Step::cancel, 0, 0ms, idle },
        { "cancel the first press", firstDown, Step::cancel, 0, 0ms, idle },
        { "cancel the first tap", firstUp, Step::cancel, 0, 0ms, idle },
        { "cancel the wait", secondDown, Step::cancel, 0, 0ms, idle },
        { "cancel the gesture", active, Step::cancel, 0, 0ms, idle, Action::end },
    };
    for (auto const& [what, before, step, key, after, expected, result] : cases) {
        SCOPED_TRACE(what);
        Recognizer recognizer(before);
        auto const action = step == Step::cancel ? recognizer.cancel()
            : step == Step::elapsed              ? recognizer.holdElapsed(start + after)
                                    : recognizer.handleFlagsChanged(key, step == Step::down, start + after);
        EXPECT_EQ(action, result);
        EXPECT_TRUE(recognizer.state() == expected);
        bool const holdsAKey = std::holds_alternative<Recognizer::SecondDown>(expected)
            || std::holds_alternative<Recognizer::Active>(expected);
        EXPECT_EQ(recognizer.heldKeyCode(), holdsAKey ? std::optional(left) : std::nullopt);
        EXPECT_EQ(recognizer.isActive(), std::holds_alternative<Recognizer::Active>(expected));
    }
}

}
}
