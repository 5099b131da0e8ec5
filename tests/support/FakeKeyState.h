#pragma once

#include "platform/KeyState.h"

#include <map>
#include <set>

namespace Quillory {

// A keyboard of which a test says what is held.
class FakeKeyState final : public KeyState {
public:
    static ModifierFlags flag(std::uint16_t keyCode)
    {
        using enum ModifierFlags;
        static std::map<std::uint16_t, ModifierFlags> const flags { { 56, shift }, { 60, shift }, { 59, control },
            { 62, control }, { 58, option }, { 61, option }, { 55, command }, { 54, command } };
        auto const found = flags.find(keyCode);
        return found == flags.end() ? none : found->second;
    }

    static bool isModifier(std::uint16_t keyCode)
    {
        constexpr std::uint16_t capsLock = 57;
        return keyCode == capsLock || flag(keyCode) != ModifierFlags::none;
    }

    bool keyIsDown(std::uint16_t keyCode) const override { return down.contains(keyCode); }

    ModifierFlags flags() const override
    {
        auto flags = ModifierFlags::none;
        for (auto const keyCode : down)
            flags = flags | flag(keyCode);
        return flags;
    }

    std::set<std::uint16_t> down;
};

}
