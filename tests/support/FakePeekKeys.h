#pragma once

#include "platform/PeekKeys.h"
#include "support/FakeKeyState.h"

#include <functional>

namespace Quillory {

// A session of its own, or a guest, on which the panel gets the keyboard late, and old flags at first.
struct FakePeekKeys final : PeekKeys {
    explicit FakePeekKeys(FakeKeyState const& keys)
        : keyboard(keys)
    {
    }

    Known known(std::optional<std::uint16_t> keyCode) const override
    {
        if (!isGuest)
            return { keyCode ? std::optional(keyboard.keyIsDown(*keyCode)) : std::nullopt, keyboard.flags() };
        if (!hasKeyboard())
            return {};
        return { std::nullopt, oldFlags() ? *oldFlags() : keyboard.flags() };
    }

    FakeKeyState const& keyboard;
    bool isGuest = false;
    std::function<bool()> hasKeyboard = [] { return false; };
    std::function<std::optional<ModifierFlags>()> oldFlags = [] { return std::optional<ModifierFlags>(); };
};

}
