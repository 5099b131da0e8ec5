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

constexpr std::uint16_t leftShift = 56;

constexpr std::size_t idle = 0, secondDown = 3, active = 4;

struct Session {
    explicit Session(ModifierGesture gesture = ModifierGesture::shift)
    {
        monitor->began = [this](ModifierFlags flags, std::uint16_t keyCode) {
            calls.push_back("began " + std::to_string(static_cast<unsigned>(flags)) + " " + std::to_string(keyCode));
        };
        monitor->ended = [this] { calls.emplace_back("ended"); };
        monitor->configure(gesture, true);
    }

    std::size_t stage() const { return monitor->recognizer().state().index(); }

    ManualExecutor executor;
    FakeKeyState keys;
    FakeInputPermission permission;
    FakeModifierEvents events { executor, keys, permission };
    std::vector<std::string> calls;
    std::optional<ModifierGestureMonitor> monitor { std::in_place, executor,
        ModifierGestureMonitor::Operations::of(events, permission, keys) };
};

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
