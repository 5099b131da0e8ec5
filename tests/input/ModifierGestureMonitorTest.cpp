#include "input/ModifierGestureMonitor.h"

#include "support/FakeInputPermission.h"
#include "support/FakeModifierEvents.h"
#include "support/ManualExecutor.h"

#include <gmock/gmock.h>

#include <string>

namespace Quillory {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using Type = ModifierEvent::Type;
using Recognizer = ModifierGestureRecognizer;

constexpr std::uint16_t leftShift = 56;
constexpr std::uint16_t rightShift = 60;
constexpr std::uint16_t leftOption = 58;
constexpr std::uint16_t control = 59;
constexpr std::uint16_t capsLock = 57;
constexpr std::uint16_t letter = 40;

enum Stage { idle, firstDown, firstUp, secondDown, active };

struct Session {
    explicit Session(ModifierGesture gesture = ModifierGesture::shift)
    {
        monitor->began = [this](ModifierFlags flags, std::uint16_t keyCode) {
            calls.push_back("began " + std::to_string(static_cast<unsigned>(flags)) + " " + std::to_string(keyCode));
        };
        monitor->ended = [this] { calls.emplace_back("ended"); };
        monitor->configure(gesture, true);
    }

    Stage stage() const { return static_cast<Stage>(monitor->recognizer().state().index()); }

    void reach(Stage stage, std::uint16_t key = leftShift)
    {
        if (stage >= firstDown)
            events.press(key);
        if (stage >= firstUp)
            events.release(key);
        if (stage >= secondDown)
            events.press(key);
        if (stage >= active)
            executor.advance(350ms);
        calls.clear();
    }

    ManualExecutor executor;
    FakeKeyState keys;
    FakeInputPermission permission;
    FakeModifierEvents events { executor, keys, permission };
    std::vector<std::string> calls;
    std::optional<ModifierGestureMonitor> monitor { std::in_place, executor,
        ModifierGestureMonitor::Operations::of(events, permission, keys) };
};

TEST(ModifierGestureMonitor, A_double_tap_that_is_held_begins_at_the_limit_and_ends_with_the_key)
{
    for (auto const& [gesture, key, began] :
        { std::tuple { ModifierGesture::shift, std::uint16_t { 56 }, "began 131072 56" },
            std::tuple { ModifierGesture::shift, std::uint16_t { 60 }, "began 131072 60" },
            std::tuple { ModifierGesture::option, std::uint16_t { 58 }, "began 524288 58" },
            std::tuple { ModifierGesture::option, std::uint16_t { 61 }, "began 524288 61" } }) {
        Session session(gesture);
        session.events.press(key);
        session.executor.advance(300ms);
        session.events.release(key);
        session.executor.advance(300ms);
        session.events.press(key);
        session.executor.advance(350ms - 1ns);
        EXPECT_THAT(session.calls, IsEmpty());
        session.executor.advance(1ns);
        EXPECT_THAT(session.calls, ElementsAre(began));
        session.executor.advance(1h);
        session.events.release(key);
        EXPECT_THAT(session.calls, ElementsAre(began, "ended"));
        EXPECT_EQ(session.stage(), idle);
    }
}

TEST(ModifierGestureMonitor, What_comes_between_ends_an_attempt_or_a_gesture_or_neither)
{
    struct Case {
        char const* what;
        std::function<void(Session&)> act;
        bool endsAttempt = true;
        bool endsGesture = true;
    };
    std::vector<Case> const cases {
        { "a key", [](Session& s) { s.events.press(letter); }, true, false },
        { "a click", [](Session& s) { s.events.click(Type::leftMouseDown); }, true, false },
        { "a right click", [](Session& s) { s.events.click(Type::rightMouseDown); }, true, false },
        { "another button", [](Session& s) { s.events.click(Type::otherMouseDown); }, true, false },
        { "another modifier", [](Session& s) { s.events.press(control); } },
        { "the same modifier on the other side", [](Session& s) { s.events.press(rightShift); } },
        { "Caps Lock pressed", [](Session& s) { s.events.press(capsLock); } },
        { "an interruption", [](Session& s) { s.events.interrupt(); } },
        { "a reset", [](Session& s) { s.monitor->reset(); } },
        { "a stop", [](Session& s) { s.monitor->stop(); } },
        { "the wish to stop", [](Session& s) { s.monitor->configure(ModifierGesture::shift, false); } },
        { "another choice", [](Session& s) { s.monitor->configure(ModifierGesture::option, true); } },
        { "the same choice", [](Session& s) { s.monitor->configure(ModifierGesture::shift, true); }, false, false },
        { "its own key once more, with Command",
            [](Session& s) {
                s.events.send(
                    { Type::flagsChanged, leftShift, ModifierFlags::shift | ModifierFlags::command, s.executor.now() });
            } },
    };
    for (auto const& [what, act, endsAttempt, endsGesture] : cases) {
        for (auto const stage : { firstDown, firstUp, secondDown, active }) {
            SCOPED_TRACE(std::string(what) + " in stage " + std::to_string(stage));
            Session session;
            session.reach(stage);
            act(session);
            bool const ends = stage == active ? endsGesture : endsAttempt;
            EXPECT_EQ(session.stage(), ends ? idle : stage);
            EXPECT_EQ(session.calls.size(), stage == active && ends ? 1U : 0U);
            session.executor.advance(1h);
            EXPECT_EQ(session.calls.size(), stage == active ? (ends ? 1U : 0U) : (!ends && stage == secondDown));
        }
    }
}

TEST(ModifierGestureMonitor, Caps_Lock_that_is_on_does_not_matter)
{
    Session session;
    for (auto const isDown : { true, false, true }) {
        auto const flags = isDown ? ModifierFlags::shift : ModifierFlags::none;
        session.events.send({ Type::flagsChanged, leftShift,
            flags | ModifierFlags::capsLock | ModifierFlags::numericPad | ModifierFlags::help,
            session.executor.now() });
    }
    EXPECT_EQ(session.stage(), secondDown);
}

TEST(ModifierGestureMonitor, The_limits_count_from_the_events_own_times)
{
    Session session;
    auto const start = session.executor.now();
    session.executor.advance(10s); // all of it was late to arrive
    session.keys.down.insert(leftShift);
    session.events.send({ Type::flagsChanged, leftShift, ModifierFlags::shift, start });
    session.events.send({ Type::flagsChanged, leftShift, ModifierFlags::none, start + 300ms });
    session.events.send({ Type::flagsChanged, leftShift, ModifierFlags::shift, start + 600ms });
    EXPECT_EQ(session.stage(), secondDown);
    // An event from the future can't have been held long enough, and there is no second wait.
    session.monitor->reset();
    auto const now = session.executor.now();
    session.events.send({ Type::flagsChanged, leftShift, ModifierFlags::shift, now });
    session.events.send({ Type::flagsChanged, leftShift, ModifierFlags::none, now });
    session.events.send({ Type::flagsChanged, leftShift, ModifierFlags::shift, now + 1ns });
    session.executor.advance(1h);
    EXPECT_EQ(session.stage(), idle);
    EXPECT_THAT(session.calls, IsEmpty());
}

TEST(ModifierGestureMonitor, Lost_permission_stops_it_until_the_next_configuration)
{
    for (auto const stage : { firstDown, secondDown, active }) {
        Session session;
        session.reach(stage);
        session.permission.canListen = false;
        session.events.press(letter);
        EXPECT_EQ(session.stage(), idle);
        EXPECT_EQ(session.calls.size(), stage == active ? 1U : 0U);
        EXPECT_EQ(session.events.observations(), 0U);
        session.permission.isTrusted = true;
        session.monitor->configure(ModifierGesture::shift, true);
        EXPECT_EQ(session.events.observations(), 1U);
    }
    // The one that only the hold finds out resets, and leaves the observation to whoever configures.
    Session session;
    session.reach(secondDown);
    session.permission.canListen = false;
    session.executor.advance(350ms);
    EXPECT_EQ(session.stage(), idle);
    EXPECT_THAT(session.calls, IsEmpty());
    EXPECT_TRUE(session.monitor->isObserving());
}

TEST(ModifierGestureMonitor, It_goes_silently_while_events_and_holds_are_pending)
{
    ModifierEvents::Receiver receive;
    ModifierEvents::Interruption interrupted;
    Session session;
    int cancelled = 0;
    ModifierGestureMonitor::Operations operations {
        .observeEvents =
            [&](auto receiver, auto interruption) {
                receive = receiver;
                interrupted = interruption;
                return ModifierEventObservation { [] { return true; }, [&] { ++cancelled; } };
            },
        .permissionGranted = [] { return true; },
        .keyIsDown = [](std::uint16_t) { return true; },
    };
    for (auto const stage : { secondDown, active }) {
        session.monitor.emplace(session.executor, operations);
        session.monitor->ended = [] { FAIL() << "ended by its end"; };
        session.monitor->configure(ModifierGesture::shift, true);
        for (auto const flags : { ModifierFlags::shift, ModifierFlags::none, ModifierFlags::shift })
            receive({ Type::flagsChanged, leftShift, flags, session.executor.now() });
        if (stage == active)
            session.executor.advance(350ms);
        ASSERT_EQ(session.stage(), stage);
        session.monitor.reset();
        receive({ Type::flagsChanged, leftShift, ModifierFlags::none, session.executor.now() });
        interrupted();
        session.executor.advance(1h);
    }
    EXPECT_EQ(cancelled, 2);
}

}
}
