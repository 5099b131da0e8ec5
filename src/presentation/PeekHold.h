#pragma once

#include "platform/ModifierFlags.h"
#include "platform/PeekKeys.h"

#include <chrono>
#include <cstdint>
#include <optional>

namespace Quillory {

// Whether the keys of a peek are still held: its key and all of its modifiers. Others may be held beside them.
constexpr bool peekStillHeld(bool keyDown, ModifierFlags flags, ModifierFlags required)
{
    return keyDown && contains(flags, required);
}

// Decides from what is known of the keys, look by look, whether a running peek is still held. Where its key can be asked
// for, that and the modifiers decide. Elsewhere modifiers are known only while our window has the keyboard: the peek is
// over once they have gone, or once the keyboard was lost. A peek that began while no modifier was down is held until
// something else ends it.
class PeekHold {
public:
    using Time = std::chrono::nanoseconds;

    struct Keys {
        std::uint16_t keyCode = 0;
        ModifierFlags modifiers = ModifierFlags::none;
    };

    // Modifiers that are seen within this time after the keyboard came count as those that hold the peek, and those that
    // must be there may be late by as much.
    static constexpr std::chrono::milliseconds settling { 200 };

    // Between two windows nobody has the keyboard for a moment.
    static constexpr std::chrono::milliseconds passing { 50 };

    // No peek: never over.
    PeekHold() = default;
    // Begun by these keys, or by others that the desktop has put in their place.
    explicit PeekHold(Keys keys);
    // Begun by a request. `held` are the modifiers that are held with it, where that is told.
    explicit PeekHold(std::optional<ModifierFlags> held);

    enum class Verdict { held, letGo, keyboardLost };
    Verdict look(PeekKeys::Known const& known, Time now);

    std::optional<std::uint16_t> keyCode() const { return m_keyCode; }

    // Those that hold the peek, as far as they are known.
    ModifierFlags modifiers() const { return m_modifiers; }

private:
    Verdict lookAt(ModifierFlags flags, Time now);
    Verdict lookWithoutKeyboard(Time now);

    std::optional<std::uint16_t> m_keyCode;
    ModifierFlags m_modifiers = ModifierFlags::none;
    bool m_isTold = false; // the modifiers are certain before they were seen
    bool m_wereSeen = false;
    std::optional<Time> m_keyboardSince;
    std::optional<Time> m_lostSince;
};

}
