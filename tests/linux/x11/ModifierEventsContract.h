#pragma once

#include "ModifierEventsDesk.h"

#include "support/Desks.h"

#include <gmock/gmock.h>

#include <functional>
#include <memory>
#include <vector>

namespace Quillory {

// What every source of the session's events, and every state of its keys, must do.
class ModifierEventsContract : public ContractOn<ModifierEventsDesk> {
protected:
    static constexpr std::uint16_t leftShift = 56, rightShift = 60, leftControl = 59, rightControl = 62;
    static constexpr std::uint16_t leftOption = 58, rightOption = 61, leftCommand = 55, rightCommand = 54;
    static constexpr std::uint16_t keyK = 40, escape = 53;

    ModifierEventObservation observe()
    {
        auto observation = desk->events().observe(
            [this](auto const& event) { received.push_back(event); }, [this] { ++interruptions; });
        EXPECT_TRUE(observation.has_value());
        return observation.value();
    }

    std::unique_ptr<ModifierEventsDesk> desk = GetParam().make();
    std::vector<ModifierEvent> received;
    int interruptions = 0;
};

TEST_P(ModifierEventsContract, Each_act_gives_one_event_with_the_flags_that_follow_from_it)
{
    using enum ModifierFlags;
    using enum ModifierEvent::Type;
    struct Case {
        std::function<void()> act;
        ModifierEvent expected;
    };
    auto const press = [this](std::uint16_t key) { return [this, key] { desk->press(key); }; };
    auto const release = [this](std::uint16_t key) { return [this, key] { desk->release(key); }; };
    auto const click = [this](ModifierEvent::Type button) { return [this, button] { desk->click(button); }; };
    std::vector<Case> const cases {
        { press(leftShift), { flagsChanged, leftShift, shift } },
        { press(rightShift), { flagsChanged, rightShift, shift } },
        { release(leftShift), { flagsChanged, leftShift, shift } },
        { release(rightShift), { flagsChanged, rightShift, none } },
        { press(leftOption), { flagsChanged, leftOption, option } },
        { press(rightOption), { flagsChanged, rightOption, option } },
        { press(leftControl), { flagsChanged, leftControl, option | control } },
        { press(rightCommand), { flagsChanged, rightCommand, option | control | command } },
        { [this] { desk->holdKeyUntilItRepeats(keyK); }, { keyDown, keyK, option | control | command } },
        { click(otherMouseDown), { otherMouseDown, 0, option | control | command } },
        { release(leftOption), { flagsChanged, leftOption, option | control | command } },
        { release(rightOption), { flagsChanged, rightOption, control | command } },
        { release(leftControl), { flagsChanged, leftControl, command } },
        { release(rightCommand), { flagsChanged, rightCommand, none } },
        { press(rightControl), { flagsChanged, rightControl, control } },
        { release(rightControl), { flagsChanged, rightControl, none } },
        { press(leftCommand), { flagsChanged, leftCommand, command } },
        { release(leftCommand), { flagsChanged, leftCommand, none } },
        { click(leftMouseDown), { leftMouseDown, 0, none } },
        { click(rightMouseDown), { rightMouseDown, 0, none } },
    };
    auto const observation = observe();
    for (std::size_t index = 0; index < cases.size(); ++index) {
        SCOPED_TRACE(index);
        auto const before = desk->now();
        received.clear();
        cases[index].act();
        ASSERT_EQ(received.size(), 1U);
        auto event = received.front();
        // The clock of a server may count whole milliseconds.
        EXPECT_GE(event.timestamp, before - std::chrono::milliseconds(2));
        EXPECT_LE(event.timestamp, desk->now());
        event.timestamp = {};
        EXPECT_TRUE(event == cases[index].expected)
            << int(event.type) << ' ' << event.keyCode << ' ' << std::uint32_t(event.flags);
    }
    desk->release(keyK);
    EXPECT_EQ(received.size(), 1U);
    observation.cancel();
}

TEST_P(ModifierEventsContract, Nothing_comes_after_the_end_also_when_it_comes_from_inside)
{
    auto const first = observe();
    EXPECT_TRUE(first.isActive());
    first.cancel();
    first.cancel();
    EXPECT_FALSE(first.isActive());
    desk->press(keyK);
    desk->changeKeyboards();
    desk->release(keyK);
    EXPECT_TRUE(received.empty());
    EXPECT_EQ(interruptions, 0);

    std::optional<ModifierEventObservation> second;
    second = desk->events().observe(
        [&](auto const& event) {
            received.push_back(event);
            auto const ending = std::exchange(second, std::nullopt);
            ending->cancel();
        },
        [] {});
    auto const third = observe();
    desk->press(keyK);
    desk->release(keyK);
    EXPECT_EQ(received.size(), 2U) << "one for each observation";
    desk->press(escape);
    desk->release(escape);
    EXPECT_EQ(received.size(), 3U) << "the other one goes on";
    third.cancel();
}

TEST_P(ModifierEventsContract, A_change_of_keyboards_interrupts_and_goes_on_only_with_permission)
{
    auto const observation = observe();
    desk->changeKeyboards();
    EXPECT_GE(interruptions, 1);
    EXPECT_TRUE(observation.isActive());
    desk->press(leftShift);
    EXPECT_EQ(received.size(), 1U);
    desk->release(leftShift);
    received.clear();
    interruptions = 0;
    desk->permission.canListen = false;
    desk->changeKeyboards();
    EXPECT_EQ(interruptions, 1);
    EXPECT_FALSE(observation.isActive());
    desk->press(leftShift);
    desk->release(leftShift);
    EXPECT_TRUE(received.empty());
}

TEST_P(ModifierEventsContract, The_state_of_the_keys_is_what_is_held_now)
{
    using enum ModifierFlags;
    auto const& keys = desk->keys();
    auto flags = none;
    for (auto const& [key, flag] :
        { std::pair { leftShift, shift }, std::pair { keyK, none }, std::pair { rightOption, option },
            std::pair { leftControl, control }, std::pair { leftCommand, command } }) {
        SCOPED_TRACE(key);
        EXPECT_FALSE(keys.keyIsDown(key));
        desk->press(key);
        flags = flags | flag;
        EXPECT_TRUE(keys.keyIsDown(key));
        EXPECT_EQ(keys.flags(), flags);
    }
    EXPECT_FALSE(keys.keyIsDown(rightShift));
    EXPECT_FALSE(keys.keyIsDown(leftOption));
    for (auto const key : { leftShift, keyK, rightOption, leftControl, leftCommand })
        desk->release(key);
    EXPECT_EQ(keys.flags(), none);
}

}
