#pragma once

#include "platform/KeyboardLayout.h"
#include "platform/ModifierFlags.h"
#include "platform/SystemShortcuts.h"

#include <QString>

#include <cstdint>
#include <optional>
#include <vector>

namespace Quillory {

// A key with modifiers as the keyboard has it, to register and to compare with what was struck.
struct KeyCombination {
    std::uint16_t keyCode = 0;
    ModifierFlags modifiers = ModifierFlags::none;

    bool operator==(KeyCombination const&) const = default;
};

// A key with modifiers, as it is stored: a virtual key code and a Carbon modifier mask.
struct Shortcut {
    std::int64_t carbonKeyCode = 0;
    std::int64_t carbonModifiers = 0;

    // The same modifiers in the other mask; bits that stand for none of them vanish, in both directions.
    static std::int64_t carbonModifiersOf(ModifierFlags modifiers);
    ModifierFlags modifiers() const;

    // The same without the Function modifier where the key makes it say nothing: what two shortcuts are compared by.
    ModifierFlags comparableModifiers() const;

    // With the comparable modifiers. Absent when no key can have that code.
    std::optional<KeyCombination> combination() const;

    // As the user sees it: the modifiers' symbols, then the key under the layout in use; U+FFFD for a key without a
    // character.
    QString description(KeyboardLayout const& layout) const;

    // JSON: an object with both fields as integers. Reading gives nothing for text that is no such object;
    // further members don't matter.
    QString encoded() const;
    static std::optional<Shortcut> decode(QString const& text);

    // F12 alone is never taken, whatever a desktop's list says.
    bool isNeverTaken() const;

    // Whether the desktop uses this very combination.
    bool isTakenBySystem(std::vector<SymbolicHotKey> const& symbolicHotKeys) const;

    bool operator==(Shortcut const&) const = default;
};

}
