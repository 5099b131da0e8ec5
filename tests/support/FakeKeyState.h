#pragma once

#include "platform/KeyState.h"

#include <set>

namespace Quillory {

// A keyboard of which a test says what is held.
class FakeKeyState final : public KeyState {
public:
    static ModifierFlags flag(std::uint16_t keyCode)
    {
        switch (keyCode) {
        case 56:
        case 60:
            return ModifierFlags::shift;
        case 59:
        case 62:
            return ModifierFlags::control;
        case 58:
        case 61:
            return ModifierFlags::option;
        case 55:
        case 54:
            return ModifierFlags::command;
        default:
            return ModifierFlags::none;
        }
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
