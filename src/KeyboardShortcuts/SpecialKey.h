#pragma once

#include <QString>

#include <cstdint>
#include <optional>

namespace Quillory {

// The keys that have no character of their own.
enum class SpecialKey : std::uint8_t {
    // clang-format off
    return_, delete_, deleteForward, end, escape, help, home, space, tab, pageUp, pageDown,
    upArrow, rightArrow, downArrow, leftArrow,
    f1, f2, f3, f4, f5, f6, f7, f8, f9, f10, f11, f12, f13, f14, f15, f16, f17, f18, f19, f20,
    keypad0, keypad1, keypad2, keypad3, keypad4, keypad5, keypad6, keypad7, keypad8, keypad9,
    keypadClear, keypadDecimal, keypadDivide, keypadEnter, keypadEquals, keypadMinus, keypadMultiply, keypadPlus,
    // clang-format on
};

namespace SpecialKeys {

// Absent for a key with a character.
std::optional<SpecialKey> withCode(std::int64_t keyCode);

std::int64_t code(SpecialKey key);

// How the key is shown, in the user's language where it is a word.
QString text(SpecialKey key);

// The character by which a menu names the key.
QString keyEquivalent(SpecialKey key);

// Keys that keyboards reach by a Function key of their own: with them that modifier says nothing.
bool isInFunctionKeySet(std::int64_t keyCode);

}

}
