#pragma once

#include "platform/HotKeys.h"

#include <gmock/gmock.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace Quillory {

// What every implementation of hot keys must do, told on a desk: the service, the user's hands on the keyboard, and
// another program that wants keys as well.
class HotKeysDesk {
public:
    virtual ~HotKeysDesk() = default;

    virtual HotKeys& hotKeys() = 0;

    // Each returns when what follows from it has been delivered.
    virtual void pressModifiers(ModifierFlags modifiers) = 0;
    virtual void releaseModifiers(ModifierFlags modifiers) = 0;
    virtual void pressKey(std::uint16_t keyCode) = 0;
    virtual void releaseKey(std::uint16_t keyCode) = 0;
    // The key is down and stays so until the keyboard has repeated it a few times.
    virtual void holdKeyUntilItRepeats(std::uint16_t keyCode) = 0;

    virtual void letAnotherProgramHave(std::uint16_t keyCode, ModifierFlags modifiers) = 0;
};

struct NamedHotKeysDesk {
    std::string name;
    std::function<std::unique_ptr<HotKeysDesk>()> make;
};

class HotKeysContract : public testing::TestWithParam<NamedHotKeysDesk> {
protected:
    static constexpr std::uint16_t keyK = 40;
    static constexpr std::uint16_t keyJ = 38;
    static constexpr auto controlOption = ModifierFlags::control | ModifierFlags::option;

    HotKeys::Handler record()
    {
        return [this](HotKeys::Phase phase) { phases.push_back(phase); };
    }

    Registration registered(std::uint16_t keyCode, ModifierFlags modifiers)
    {
        auto registration = desk->hotKeys().registerHotKey(keyCode, modifiers, record());
        EXPECT_TRUE(registration.has_value());
        return registration ? std::move(*registration) : Registration();
    }

    void strike(std::uint16_t keyCode, ModifierFlags modifiers)
    {
        desk->pressModifiers(modifiers);
        desk->pressKey(keyCode);
        desk->releaseKey(keyCode);
        desk->releaseModifiers(modifiers);
    }

    std::unique_ptr<HotKeysDesk> desk = GetParam().make();
    std::vector<HotKeys::Phase> phases;
    std::vector<HotKeys::Phase> const once { HotKeys::Phase::pressed, HotKeys::Phase::released };
};

TEST_P(HotKeysContract, Press_and_release_come_once_each_for_exactly_these_modifiers)
{
    using enum ModifierFlags;
    std::vector<ModifierFlags> const combinations { none, control, option, shift, command, control | option,
        control | option | shift | command };
    for (auto const modifiers : combinations) {
        auto const hotKey = registered(keyK, modifiers);
        for (auto const struck : combinations) {
            SCOPED_TRACE(testing::Message()
                << "registered " << std::uint32_t(modifiers) << ", struck " << std::uint32_t(struck));
            phases.clear();
            strike(keyK, struck);
            if (struck == modifiers)
                EXPECT_EQ(phases, once);
            else
                EXPECT_TRUE(phases.empty());
        }
    }
}

TEST_P(HotKeysContract, Auto_repeat_gives_nothing)
{
    auto const hotKey = registered(keyK, controlOption);
    desk->pressModifiers(controlOption);
    desk->holdKeyUntilItRepeats(keyK);
    EXPECT_EQ(phases, std::vector { HotKeys::Phase::pressed });
    desk->releaseKey(keyK);
    desk->releaseModifiers(controlOption);
    EXPECT_EQ(phases, once);
}

TEST_P(HotKeysContract, The_release_comes_also_when_the_modifiers_were_let_go_first)
{
    auto const hotKey = registered(keyK, controlOption);
    desk->pressModifiers(controlOption);
    desk->pressKey(keyK);
    desk->releaseModifiers(controlOption);
    EXPECT_EQ(phases, std::vector { HotKeys::Phase::pressed });
    desk->releaseKey(keyK);
    EXPECT_EQ(phases, once);
}

TEST_P(HotKeysContract, A_combination_that_is_held_already_is_refused_and_the_others_stay)
{
    desk->letAnotherProgramHave(keyJ, controlOption);
    auto const own = registered(keyK, controlOption);
    auto const taken = HotKeys::Refusal { HotKeys::Refusal::Reason::taken };
    for (auto const keyCode : { keyJ, keyK }) {
        auto const second = desk->hotKeys().registerHotKey(keyCode, controlOption, record());
        ASSERT_FALSE(second.has_value());
        EXPECT_EQ(second.error(), taken);
    }
    strike(keyJ, controlOption);
    EXPECT_TRUE(phases.empty());
    strike(keyK, controlOption);
    EXPECT_EQ(phases, once);
}

TEST_P(HotKeysContract, Nothing_comes_after_the_registrations_end_and_the_key_can_be_had_again)
{
    auto first = registered(keyK, controlOption);
    first.end();
    strike(keyK, controlOption);
    EXPECT_TRUE(phases.empty());
    auto const second = registered(keyK, controlOption);
    strike(keyK, controlOption);
    EXPECT_EQ(phases, once);
}

TEST_P(HotKeysContract, A_handler_may_end_its_own_registration)
{
    Registration hotKey;
    auto made = desk->hotKeys().registerHotKey(keyK, controlOption, [&](HotKeys::Phase phase) {
        hotKey.end();
        phases.push_back(phase);
    });
    ASSERT_TRUE(made.has_value());
    hotKey = std::move(*made);
    strike(keyK, controlOption);
    strike(keyK, controlOption);
    EXPECT_EQ(phases, std::vector { HotKeys::Phase::pressed });
}

}
