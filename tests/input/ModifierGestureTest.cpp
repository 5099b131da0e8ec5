#include "input/ModifierGestureMonitor.h"

#include "support/Dice.h"
#include "support/FakeInputPermission.h"
#include "support/FakeModifierEvents.h"
#include "support/ManualExecutor.h"
#include "support/Test.h"

namespace Quillory {
namespace {

using Nanoseconds = std::chrono::nanoseconds;

TEST(ModifierGesture, Each_one_has_its_text_its_label_and_its_two_keys)
{
    using Gesture = ModifierGesture;
    for (auto const& [gesture, raw, label, flag, keys] :
        std::initializer_list<std::tuple<Gesture, QString, QString, std::uint32_t, std::vector<std::uint16_t>>> {
            { Gesture::off, u"off"_s, u"Off"_s, 0, {} },
            { Gesture::shift, u"shift"_s, u"Double Shift, then hold"_s, 0x20000, { 56, 60 } },
            { Gesture::option, u"option"_s, u"Double Option, then hold"_s, 0x80000, { 58, 61 } } }) {
        EXPECT_EQ(rawValue(gesture), raw);
        EXPECT_EQ(modifierGestureFromRawValue(raw), gesture);
        EXPECT_EQ(displayLabel(gesture), label);
        EXPECT_EQ(static_cast<std::uint32_t>(modifierFlag(gesture)), flag);
        EXPECT_THAT(keyCodes(gesture), ElementsAreArray(keys));
    }
    EXPECT_THAT(allModifierGestures, ElementsAre(Gesture::off, Gesture::shift, Gesture::option));
    for (auto const& other : { u"Shift"_s, u""_s, u"shift "_s, u"command"_s })
        EXPECT_EQ(modifierGestureFromRawValue(other), std::nullopt);
}

// The same rules told once more and differently: a count of the transitions that fitted so far.
struct Model {
    ModifierGesture selection = ModifierGesture::off;
    bool hasObservation = false;
    bool isAlive = false;
    int fitted = 0; // 3 waits for the hold, 4 is the gesture
    std::uint16_t key = 0;
    Nanoseconds latest {};
    std::optional<Nanoseconds> hold;
    int began = 0;
    int ended = 0;
    int started = 0;

    void drop()
    {
        ended += fitted == 4;
        fitted = 0;
        hold.reset();
    }

    void event(ModifierEvent const& event, bool isPermitted)
    {
        if (!hasObservation || !isAlive)
            return;
        auto const number = static_cast<std::uint32_t>(event.flags) & 0x9e0000U;
        auto const ours = selection == ModifierGesture::shift ? 0x20000U : 0x80000U;
        bool const isKey = selection == ModifierGesture::shift ? event.keyCode == 56 || event.keyCode == 60
                                                               : event.keyCode == 58 || event.keyCode == 61;
        if (!isPermitted) {
            drop();
            hasObservation = isAlive = false;
        } else if (event.type != ModifierEvent::Type::flagsChanged) {
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
                hold = event.timestamp + 350ms;
        }
    }

    void pass(Nanoseconds now, bool isPermitted, bool isHeld)
    {
        if (!hold || *hold > now)
            return;
        hold.reset();
        if (!isPermitted || !isHeld) {
            drop();
        } else {
            fitted = 4;
            ++began;
        }
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

TEST(ModifierGestureMonitor, Random_sessions_go_as_a_model_of_a_few_lines_says)
{
    constexpr int sessions = 200;
    constexpr int steps = 2000;
    int gestures = 0;
    for (unsigned seed = 1; seed <= sessions; ++seed) {
        Dice dice(seed);
        ManualExecutor executor;
        FakeKeyState keys;
        FakeInputPermission permission;
        FakeModifierEvents events(executor, keys, permission);
        ModifierGestureMonitor monitor(executor, ModifierGestureMonitor::Operations::of(events, permission, keys));
        Model model;
        int began = 0;
        int ended = 0;
        monitor.began = [&](auto flags, auto keyCode) {
            ++began;
            EXPECT_EQ(flags, modifierFlag(model.selection));
            EXPECT_EQ(keyCode, model.key);
        };
        monitor.ended = [&] { ++ended; };
        std::uint16_t usual = 56;
        bool isDown = false;
        for (int step = 0; step < steps; ++step) {
            permission.canListen = !dice.oneIn(120);
            if (dice.oneIn(12))
                usual = dice.anyOf(model.selection == ModifierGesture::option
                        ? std::to_array<std::uint16_t>({ 58, 61, 58, 61, 56 })
                        : std::to_array<std::uint16_t>({ 56, 60, 56, 60, 58 }));
            switch (!model.isAlive && dice.oneIn(4) ? 0 : dice.below(40)) {
            case 0: {
                bool const isEnabled = !dice.oneIn(4);
                events.isRefusing = dice.oneIn(5);
                auto const gesture = dice.oneIn(3) ? dice.anyOf(allModifierGestures) : model.selection;
                model.configure(gesture, isEnabled, events.isRefusing);
                monitor.configure(gesture, isEnabled);
                break;
            }
            case 1:
                if (dice.oneIn(3)) {
                    events.die();
                    model.isAlive = false;
                } else if (dice.oneIn(2)) {
                    model.drop();
                    monitor.reset();
                } else if (dice.oneIn(3)) {
                    model.drop();
                    model.hasObservation = model.isAlive = false;
                    monitor.stop();
                } else if (model.hasObservation && model.isAlive) {
                    model.drop();
                    model.isAlive = permission.canListen;
                    events.interrupt();
                }
                break;
            case 2: {
                using enum ModifierEvent::Type;
                ModifierEvent event { dice.anyOf(std::array { keyDown, leftMouseDown, flagsChanged, flagsChanged }),
                    dice.anyOf(std::to_array<std::uint16_t>({ 40, 56, 57, 59, 60, 61 })),
                    dice.anyOf(std::array { ModifierFlags::none, ModifierFlags::shift, ModifierFlags::option,
                        ModifierFlags::shift | ModifierFlags::command, ModifierFlags::function }),
                    executor.now() };
                model.event(event, permission.canListen);
                events.send(event);
                break;
            }
            default: {
                isDown = !isDown;
                auto const flag = FakeKeyState::flag(usual)
                    | dice.anyOf(std::array { ModifierFlags::none, ModifierFlags::capsLock });
                ModifierEvent const event { ModifierEvent::Type::flagsChanged, usual,
                    isDown ? flag : ModifierFlags::none, executor.now() };
                keys.down.clear();
                if (isDown && !dice.oneIn(6))
                    keys.down.insert(usual);
                model.event(event, permission.canListen);
                events.send(event);
            }
            }
            executor.advance(dice.anyOf(
                std::array<Nanoseconds, 9> { 0ns, 20ms, 100ms, 200ms, 299ms, 300ms, 300ms + 1ns, 350ms - 1ns, 350ms }));
            model.pass(executor.now(), permission.canListen, keys.keyIsDown(model.key));
            ASSERT_EQ(began, model.began) << "seed " << seed << ", step " << step;
            ASSERT_EQ(ended, model.ended) << "seed " << seed << ", step " << step;
            ASSERT_EQ(monitor.recognizer().state().index(), static_cast<std::size_t>(model.fitted))
                << "seed " << seed << ", step " << step;
            ASSERT_EQ(monitor.recognizer().isActive(), model.fitted == 4);
            ASSERT_EQ(monitor.recognizer().heldKeyCode(), model.fitted < 3 ? std::nullopt : std::optional(model.key));
            ASSERT_EQ(events.observations(), static_cast<std::size_t>(model.isAlive));
            ASSERT_EQ(monitor.isObserving(), model.hasObservation);
            ASSERT_EQ(events.started, model.started);
            ASSERT_EQ(monitor.selection(), model.selection);
        }
        gestures += began;
    }
    EXPECT_GT(gestures, sessions * 8);
}

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
    session.keys.down.insert(leftShift);
    auto operations = ModifierGestureMonitor::Operations::of(session.events, session.permission, session.keys);
    operations.observeEvents = [&](auto receiver, auto interruption) {
        receive = receiver;
        interrupted = interruption;
        return session.events.observe(receiver, interruption);
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
    EXPECT_EQ(session.events.observations(), 0U);
}

}
}
