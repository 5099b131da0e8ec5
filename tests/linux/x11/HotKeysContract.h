#pragma once

#include "platform/HotKeys.h"
#include "support/Dice.h"
#include "support/Test.h"

#include <set>
#include <utility>
#include <vector>

namespace Quillory {

// Whatever the hands do, each press of a combination that was registered is told at once and ended by its key's release,
// and what we or another program hold is refused. `desk` presses and releases keys that do not repeat, and lets another
// program have a combination.
template<typename Desk>
void tellsEachHotKeyItsOwnPhases(Desk& desk, HotKeys& service)
{
    using enum ModifierFlags;
    using enum HotKeys::Phase;
    constexpr std::uint16_t keyA = 0, keyJ = 38, keyK = 40;
    struct HotKey {
        std::uint16_t code;
        ModifierFlags modifiers;
        Registration registration = {};
        bool endsItself = false;
        bool isDown = false;
    };
    std::vector<HotKey> hotKeys;
    for (auto const& [code, modifiers] : { std::pair { keyA, shift }, std::pair { keyK, control | option },
             std::pair { keyJ, control | option }, std::pair { keyK, option | shift }, std::pair { keyJ, option },
             std::pair { keyK, command }, std::pair { keyK, none } })
        hotKeys.push_back({ code, modifiers });
    constexpr std::size_t heldElsewhere = 0;
    desk.letAnotherProgramHave(keyA, shift);
    std::pair<std::uint16_t, ModifierFlags> const modifierKeys[] { { 59, control }, { 58, option }, { 56, shift },
        { 55, command } };
    auto modifiers = none;
    std::set<std::uint16_t> keysDown;
    std::vector<std::pair<std::size_t, HotKeys::Phase>> told, expected;
    Dice dice(20);
    auto const changeRegistration = [&](std::size_t which) {
        auto& hotKey = hotKeys[which];
        bool const wasActive = hotKey.registration.isActive();
        if (wasActive && dice.oneIn(2)) {
            hotKey.registration.end();
            hotKey.isDown = false;
            return;
        }
        EXPECT_EQ(service.probe(hotKey.code, hotKey.modifiers).has_value(), which != heldElsewhere);
        auto made = service.registerHotKey(hotKey.code, hotKey.modifiers, [&, which](HotKeys::Phase phase) {
            told.emplace_back(which, phase);
            if (hotKeys[which].endsItself)
                hotKeys[which].registration.end();
        });
        ASSERT_EQ(made.has_value(), which != heldElsewhere && !wasActive);
        if (!made) {
            EXPECT_EQ(made.error().reason, HotKeys::Refusal::Reason::taken);
            return;
        }
        hotKey.registration = std::move(*made);
        hotKey.endsItself = dice.oneIn(8);
    };
    for (int step = 0; step < 3000 && !Test::HasFailure(); ++step) {
        SCOPED_TRACE(step);
        if (dice.oneIn(5)) {
            auto const& [key, flag] = dice.anyOf(modifierKeys);
            bool const isHeld = contains(modifiers, flag);
            isHeld ? desk.release(key) : desk.press(key);
            modifiers = static_cast<ModifierFlags>(std::to_underlying(modifiers) ^ std::to_underlying(flag));
        } else if (dice.oneIn(4)) {
            changeRegistration(dice.below(hotKeys.size()));
        } else {
            auto const code = dice.oneIn(2) ? keyJ : keyK;
            bool const goesDown = !keysDown.erase(code);
            for (std::size_t each = 0; each < hotKeys.size(); ++each) {
                auto& hotKey = hotKeys[each];
                bool const matches = goesDown && hotKey.registration.isActive() && hotKey.modifiers == modifiers;
                if (hotKey.code != code || hotKey.isDown == matches)
                    continue;
                hotKey.isDown = matches && !hotKey.endsItself;
                expected.emplace_back(each, matches ? pressed : released);
            }
            if (goesDown)
                keysDown.insert(code);
            goesDown ? desk.press(code) : desk.release(code);
        }
        EXPECT_EQ(told, expected);
    }
    EXPECT_GT(told.size(), 100U);
}

}
