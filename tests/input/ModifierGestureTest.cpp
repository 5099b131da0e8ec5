#include "input/ModifierGestureMonitor.h"

#include "support/Dice.h"
#include "support/FakeInputPermission.h"
#include "support/FakeModifierEvents.h"
#include "support/ManualExecutor.h"
#include "support/Test.h"

namespace Quillory {
namespace {

using Time = std::chrono::nanoseconds;
using Type = ModifierEvent::Type;

// The rules told once more and differently: a count of the transitions that fitted so far.
struct Model {
    ModifierGesture selection = ModifierGesture::off;
    bool hasObservation = false;
    bool isAlive = false;
    int fitted = 0; // 3 waits for the hold, 4 is the gesture
    std::uint16_t key = 0;
    Time latest {};
    std::optional<Time> hold;
    int began = 0;
    int ended = 0;
    int started = 0;

    void drop()
    {
        ended += fitted == 4;
        fitted = 0;
        hold.reset();
    }

    void stop()
    {
        drop();
        hasObservation = isAlive = false;
    }

    void interrupt(bool isPermitted)
    {
        if (isAlive)
            drop();
        isAlive = isAlive && isPermitted;
    }

    void event(ModifierEvent const& event, Time now, bool isPermitted)
    {
        if (!isAlive)
            return;
        auto const number = static_cast<std::uint32_t>(event.flags) & 0x9e0000U;
        auto const ours = selection == ModifierGesture::shift ? 0x20000U : 0x80000U;
        bool const isKey = selection == ModifierGesture::shift ? event.keyCode == 56 || event.keyCode == 60
                                                               : event.keyCode == 58 || event.keyCode == 61;
        if (!isPermitted) {
            stop();
        } else if (event.type != Type::flagsChanged) {
            if (fitted != 4)
                drop();
        } else if (!isKey || (number != 0 && number != ours)) {
            drop();
        } else {
            bool const goesOn = fitted == 0 ? number == ours
                                            : fitted < 3 && event.keyCode == key && (number == ours) == (fitted == 2)
                    && event.timestamp - latest <= 300ms;
            int const next = goesOn ? fitted + 1 : 0;
            drop();
            fitted = next;
            key = event.keyCode;
            latest = event.timestamp;
            if (fitted == 3)
                hold = now + 350ms;
        }
    }

    void pass(Time now, bool isPermitted, bool isHeld)
    {
        if (!hold || *hold > now)
            return;
        // A press that is told before its time has not been held for long enough, and there is no second wait.
        if (!isPermitted || !isHeld || *hold - latest < 350ms)
            return drop();
        hold.reset();
        fitted = 4;
        ++began;
    }

    void configure(ModifierGesture gesture, bool isEnabled, bool isRefused)
    {
        bool const isWanted = gesture != ModifierGesture::off && isEnabled;
        if (gesture == selection && (hasObservation ? isEnabled && (isAlive || !isWanted) : !isWanted))
            return;
        drop();
        selection = gesture;
        hasObservation = isAlive = isWanted && !isRefused;
        started += isAlive;
    }
};

// The monitor and its model, which hear of the same.
class ModifierGestureMonitorTest : public Test {
protected:
    void begin(unsigned seed)
    {
        dice = Dice(seed);
        model = {};
        began = ended = 0;
        auto operations = ModifierGestureMonitor::Operations::of(events, permission, keys);
        operations.observeEvents = [this, observe = operations.observeEvents](auto receive, auto interrupted) {
            late = [=, this] {
                receive({ Type::flagsChanged, model.key, ModifierFlags::none, executor.now() });
                interrupted();
            };
            return observe(receive, interrupted);
        };
        events.started = 0;
        monitor.emplace(executor, operations);
        monitor->began = [this](auto flags, auto keyCode) {
            ++began;
            EXPECT_EQ(flags, modifierFlag(model.selection));
            EXPECT_EQ(keyCode, model.key);
        };
        monitor->ended = [this] { ++ended; };
    }

    void step()
    {
        permission.canListen = !dice.oneIn(120);
        switch (!model.isAlive && dice.oneIn(4) ? 0 : dice.below(80)) {
        case 0:
        case 1:
            return configure();
        case 2:
            model.isAlive = false;
            return events.die();
        case 3:
            model.drop();
            return monitor->reset();
        case 4:
            model.stop();
            return monitor->stop();
        case 5:
            model.interrupt(permission.canListen);
            return events.interrupt();
        case 6:
        case 7:
            return send({ dice.anyOf(std::array { Type::keyDown, Type::leftMouseDown, Type::flagsChanged }),
                dice.anyOf(std::to_array<std::uint16_t>({ 40, 56, 57, 59, 60, 61 })),
                dice.anyOf(std::array { ModifierFlags::none, ModifierFlags::shift, ModifierFlags::option,
                    ModifierFlags::shift | ModifierFlags::command, ModifierFlags::function }) });
        default:
            return strikeUsualKey();
        }
    }

    void configure()
    {
        auto const gesture = dice.oneIn(3) ? dice.anyOf(allModifierGestures) : model.selection;
        bool const isEnabled = !dice.oneIn(4);
        events.isRefusing = dice.oneIn(5);
        model.configure(gesture, isEnabled, events.isRefusing);
        monitor->configure(gesture, isEnabled);
    }

    void strikeUsualKey()
    {
        if (dice.oneIn(12)) {
            usual = dice.anyOf(model.selection == ModifierGesture::option
                    ? std::to_array<std::uint16_t>({ 58, 61, 58, 61, 56 })
                    : std::to_array<std::uint16_t>({ 56, 60, 56, 60, 58 }));
        }
        isDown = !isDown;
        auto const flag = FakeKeyState::flag(usual) | (dice.oneIn(2) ? ModifierFlags::none : ModifierFlags::capsLock);
        keys.down.clear();
        if (isDown && !dice.oneIn(6))
            keys.down.insert(usual);
        send({ Type::flagsChanged, usual, isDown ? flag : ModifierFlags::none });
    }

    // Some come late, and some before their time.
    void send(ModifierEvent event)
    {
        event.timestamp = executor.now() - (dice.oneIn(4) ? dice.anyOf(std::array<Time, 3> { 10ms, 1s, -1ns }) : 0ns);
        model.event(event, executor.now(), permission.canListen);
        events.send(event);
    }

    void pass()
    {
        executor.advance(
            dice.anyOf(std::array<Time, 9> { 0ns, 20ms, 100ms, 200ms, 299ms, 300ms, 300ms + 1ns, 350ms - 1ns, 350ms }));
        model.pass(executor.now(), permission.canListen, keys.keyIsDown(model.key));
    }

    void compare()
    {
        ASSERT_EQ(began, model.began);
        ASSERT_EQ(ended, model.ended);
        auto const& recognizer = monitor->recognizer();
        ASSERT_EQ(recognizer.state().index(), static_cast<std::size_t>(model.fitted));
        ASSERT_EQ(recognizer.heldKeyCode(), model.fitted < 3 ? std::nullopt : std::optional(model.key));
        ASSERT_EQ(events.observations(), static_cast<std::size_t>(model.isAlive));
        ASSERT_EQ(monitor->isObserving(), model.hasObservation);
        ASSERT_EQ(events.started, model.started);
        ASSERT_EQ(monitor->selection(), model.selection);
    }

    Dice dice { 0 };
    ManualExecutor executor;
    FakeKeyState keys;
    FakeInputPermission permission;
    FakeModifierEvents events { executor, keys, permission };
    Model model;
    int began = 0, ended = 0;
    std::uint16_t usual = 56;
    bool isDown = false;
    std::function<void()> late = [] { }; // what the last observation brings after its end
    std::optional<ModifierGestureMonitor> monitor;
};

TEST_F(ModifierGestureMonitorTest, Random_sessions_go_as_a_model_of_a_few_lines_says)
{
    constexpr int sessions = 200;
    int gestures = 0;
    for (unsigned seed = 1; seed <= sessions; ++seed) {
        begin(seed);
        for (int count = 0; count < 2000; ++count) {
            SCOPED_TRACE(Message() << "seed " << seed << ", step " << count);
            step();
            pass();
            compare();
            if (HasFatalFailure())
                return;
        }
        gestures += began;
        // It goes silently, whatever is pending.
        monitor.reset();
        late();
        executor.advance(1h);
        ASSERT_EQ(began + ended, model.began + model.ended);
        ASSERT_EQ(events.observations(), 0U);
    }
    EXPECT_GT(gestures, sessions * 8);
}

}
}
