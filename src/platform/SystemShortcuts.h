#pragma once

#include "platform/ModifierFlags.h"

#include <cstdint>
#include <vector>

namespace Quillory {

// A combination that the desktop uses for itself.
struct SymbolicHotKey {
    std::int64_t keyCode = 0; // virtual
    ModifierFlags modifiers = ModifierFlags::none;
    bool isEnabled = true;

    bool operator==(SymbolicHotKey const&) const = default;
};

// The shortcuts of the desktop at hand.
class SystemShortcuts {
public:
    virtual ~SystemShortcuts() = default;

    // Reads the desktop's settings afresh, which may take some ten milliseconds: for when the user sets a shortcut.
    // Empty where the desktop is not known or says nothing.
    virtual std::vector<SymbolicHotKey> symbolicHotKeys() const = 0;
};

}
