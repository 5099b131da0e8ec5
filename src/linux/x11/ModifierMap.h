#pragma once

#include "platform/ModifierFlags.h"

#include <cstdint>
#include <optional>
#include <vector>

#include <xcb/xcb.h>

namespace Quillory {

// Which of the server's modifier bits mean what under the present keyboard map. Modifiers are known by their key
// symbols, so that swapped keys are followed.
class ModifierMap {
public:
    // Empty when the server gives none.
    static ModifierMap read(xcb_connection_t* connection);

    // The server's bits for exactly these modifiers. Absent when the keyboard has no key for one of them.
    std::optional<std::uint16_t> serverMask(ModifierFlags modifiers) const;

    // One key for each of the modifiers, as server key codes. Absent as above.
    std::optional<std::vector<std::uint8_t>> keyCodes(ModifierFlags modifiers) const;

    // Every set of locks that may be on while a hot key is pressed, the empty set first.
    std::vector<std::uint16_t> lockCombinations() const;

    bool operator==(ModifierMap const&) const = default;

private:
    struct Modifier {
        std::uint16_t bit = 0;
        std::uint8_t keyCode = 0;
        bool operator==(Modifier const&) const = default;
    };

    void add(std::uint32_t keySymbol, Modifier modifier);
    std::optional<std::vector<Modifier>> modifiersFor(ModifierFlags modifiers) const;

    Modifier m_control;
    Modifier m_option;
    Modifier m_shift;
    Modifier m_command;
    Modifier m_numLock;
    Modifier m_scrollLock;
};

}
