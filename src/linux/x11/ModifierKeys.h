#pragma once

#include "linux/x11/HeldKeys.h"
#include "platform/ModifierFlags.h"

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

namespace Quillory {

// Which keys are modifiers under one keyboard map, left and right apart. What a key gives by itself decides, not its
// place, so that keys that changed places are followed. AltGr counts as the Option key where it stands; modifiers
// without a counterpart count as the Function key, which has no flag.
class ModifierKeys {
public:
    ModifierKeys() = default;

    // As the server has them now. Waits for the server; without a modifier when it is gone.
    static ModifierKeys read(xcb_connection_t* connection);

    // The virtual key code of a modifier key. Absent for every other key.
    std::optional<std::uint16_t> keyCode(std::uint8_t serverKeyCode) const;

    // The keys that are this one, by virtual key code: a modifier by what the key gives, any other by its place.
    KeySet keys(std::uint16_t keyCode) const;

    // The modifiers that the held keys make. Latched and locked ones don't count, so that sticky keys spoil no tap.
    ModifierFlags flags(KeySet const& held) const;

private:
    void add(std::uint8_t serverKeyCode, std::uint32_t keySymbol);

    std::array<std::optional<std::uint16_t>, 256> m_keyCodes {};
};

}
