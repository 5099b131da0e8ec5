#pragma once

#include "platform/ModifierFlags.h"

#include <chrono>
#include <cstdint>

namespace Quillory {

// One event of the session's keyboard or mouse: a key or a button went down, or a modifier key changed. Auto-repeat,
// releases of other keys and of buttons, movement and wheels are none.
struct ModifierEvent {
    enum class Type { leftMouseDown, rightMouseDown, otherMouseDown, keyDown, flagsChanged };

    Type type = Type::flagsChanged;
    std::uint16_t keyCode = 0; // virtual key code (see VirtualKeys), left and right keys apart; 0 for the mouse
    ModifierFlags flags = ModifierFlags::none; // as they are after the event
    std::chrono::nanoseconds timestamp {}; // when it happened, on the clock of `Executor::now`

    bool operator==(ModifierEvent const&) const = default;
};

}
