#include "input/ModifierGestureMonitor.h"

#include "support/FakeInputPermission.h"
#include "support/FakeModifierEvents.h"
#include "support/ManualExecutor.h"

#include <gmock/gmock.h>

#include <random>

namespace Quillory {
namespace {

using namespace std::chrono_literals;
using Nanoseconds = std::chrono::nanoseconds;

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
    constexpr int sessions = 40;
    constexpr int steps = 2000;
    int gestures = 0;
    for (unsigned seed = 1; seed <= sessions; ++seed) {
        std::mt19937 random(seed);
        auto const pick = [&](auto const& list) { return list[random() % std::size(list)]; };
        auto const oneIn = [&](unsigned count) { return random() % count == 0; };
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
            permission.canListen = !oneIn(120);
            if (oneIn(12))
                usual = pick(model.selection == ModifierGesture::option
                        ? std::to_array<std::uint16_t>({ 58, 61, 58, 61, 56 })
                        : std::to_array<std::uint16_t>({ 56, 60, 56, 60, 58 }));
            switch (!model.isAlive && oneIn(4) ? 0 : random() % 40) {
            case 0: {
                bool const isEnabled = !oneIn(4);
                events.isRefusing = oneIn(5);
                auto const gesture = oneIn(3) ? pick(allModifierGestures) : model.selection;
                model.configure(gesture, isEnabled, events.isRefusing);
                monitor.configure(gesture, isEnabled);
                break;
            }
            case 1:
                if (oneIn(3)) {
                    events.die();
                    model.isAlive = false;
                } else if (oneIn(2)) {
                    model.drop();
                    monitor.reset();
                } else if (oneIn(3)) {
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
                ModifierEvent event { pick(std::array { keyDown, leftMouseDown, flagsChanged, flagsChanged }),
                    pick(std::to_array<std::uint16_t>({ 40, 56, 57, 59, 60, 61 })),
                    pick(std::array { ModifierFlags::none, ModifierFlags::shift, ModifierFlags::option,
                        ModifierFlags::shift | ModifierFlags::command, ModifierFlags::function }),
                    executor.now() };
                model.event(event, permission.canListen);
                events.send(event);
                break;
            }
            default: {
                isDown = !isDown;
                auto const flag = FakeKeyState::flag(usual)
                    | pick(std::array { ModifierFlags::none, ModifierFlags::capsLock });
                ModifierEvent const event { ModifierEvent::Type::flagsChanged, usual,
                    isDown ? flag : ModifierFlags::none, executor.now() };
                keys.down.clear();
                if (isDown && !oneIn(6))
                    keys.down.insert(usual);
                model.event(event, permission.canListen);
                events.send(event);
            }
            }
            executor.advance(pick(
                std::array<Nanoseconds, 9> { 0ns, 20ms, 100ms, 200ms, 299ms, 300ms, 300ms + 1ns, 350ms - 1ns, 350ms }));
            model.pass(executor.now(), permission.canListen, keys.keyIsDown(model.key));
            ASSERT_EQ(began, model.began) << "seed " << seed << ", step " << step;
            ASSERT_EQ(ended, model.ended) << "seed " << seed << ", step " << step;
            ASSERT_EQ(monitor.recognizer().state().index(), static_cast<std::size_t>(model.fitted))
                << "seed " << seed << ", step " << step;
            ASSERT_EQ(events.observations(), static_cast<std::size_t>(model.isAlive));
            ASSERT_EQ(monitor.isObserving(), model.hasObservation);
            ASSERT_EQ(events.started, model.started);
            ASSERT_EQ(monitor.selection(), model.selection);
        }
        gestures += began;
    }
    EXPECT_GT(gestures, sessions * 8);
}

}
}
