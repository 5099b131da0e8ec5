#pragma once

#include "platform/HotKeys.h"

#include "support/Desks.h"

#include <gmock/gmock.h>

#include <functional>
#include <memory>
#include <numeric>
#include <random>
#include <set>
#include <string>
#include <utility>
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

    // From now on keys that are down stay down without a further press.
    virtual void stopRepeating() = 0;

    virtual void letAnotherProgramHave(std::uint16_t keyCode, ModifierFlags modifiers) = 0;
};

class HotKeysContract : public ContractOn<HotKeysDesk> {
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

// Whatever the hands do, each press of a registered combination is told at once and ended by its key's release.
TEST_P(HotKeysContract, Any_order_of_keys_and_registrations_gives_each_its_own_phases)
{
    using enum ModifierFlags;
    struct Key {
        std::uint16_t code;
        ModifierFlags modifiers;
        Registration registration;
        bool isDown = false;
    };
    desk->stopRepeating();
    std::vector<Key> hotKeys;
    for (auto const& [code, modifiers] : { std::pair { keyK, controlOption }, std::pair { keyJ, controlOption },
             std::pair { keyK, controlOption | shift }, std::pair { keyJ, option } })
        hotKeys.push_back({ code, modifiers, {} });
    std::vector<std::pair<std::size_t, HotKeys::Phase>> told, expected;
    std::vector<ModifierFlags> const modifierKeys { control, option, shift };
    std::set<std::size_t> modifiersDown;
    std::set<std::uint16_t> keysDown;
    std::mt19937 random(20);
    for (int step = 0; step < 3000; ++step) {
        SCOPED_TRACE(step);
        auto const which = random() % 4;
        auto& hotKey = hotKeys[which];
        switch (random() % 5) {
        case 0: // one modifier
            if (auto const key = which % modifierKeys.size(); modifiersDown.erase(key)) {
                desk->releaseModifiers(modifierKeys[key]);
            } else {
                desk->pressModifiers(modifierKeys[key]);
                modifiersDown.insert(key);
            }
            break;
        case 1: // one registration
            if (hotKey.registration.isActive()) {
                hotKey.registration.end();
                hotKey.isDown = false;
            } else {
                auto made = desk->hotKeys().registerHotKey(hotKey.code, hotKey.modifiers,
                    [&told, which](HotKeys::Phase phase) { told.emplace_back(which, phase); });
                ASSERT_TRUE(made.has_value());
                hotKey.registration = std::move(*made);
            }
            break;
        default: // one key
            auto const code = hotKey.code;
            auto const modifiers = std::accumulate(modifiersDown.begin(), modifiersDown.end(), none,
                [&](ModifierFlags all, std::size_t key) { return all | modifierKeys[key]; });
            bool const goesDown = !keysDown.erase(code);
            for (std::size_t each = 0; each < hotKeys.size(); ++each) {
                auto& other = hotKeys[each];
                bool const matches = goesDown && other.registration.isActive() && other.modifiers == modifiers;
                if (other.code != code || other.isDown == matches)
                    continue;
                other.isDown = matches;
                expected.emplace_back(each, matches ? HotKeys::Phase::pressed : HotKeys::Phase::released);
            }
            if (goesDown) {
                keysDown.insert(code);
                desk->pressKey(code);
            } else {
                desk->releaseKey(code);
            }
        }
        ASSERT_EQ(told, expected);
    }
    EXPECT_GT(told.size(), 200U);
}

TEST_P(HotKeysContract, A_combination_that_is_held_already_is_refused_and_the_others_stay)
{
    desk->letAnotherProgramHave(keyJ, controlOption);
    auto const own = registered(keyK, controlOption);
    auto const taken = HotKeys::Refusal { HotKeys::Refusal::Reason::taken };
    EXPECT_EQ(desk->hotKeys().probe(keyJ, controlOption), std::unexpected(taken));
    EXPECT_TRUE(desk->hotKeys().probe(keyK, controlOption).has_value());
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
