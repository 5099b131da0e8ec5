#pragma once

#include "platform/ModifierFlags.h"

#include <cstdint>

namespace Quillory {

// The keys held on the session's keyboards at this moment, whatever has the focus. Main thread only.
class KeyState {
public:
    virtual ~KeyState() = default;

    // By virtual key code (see VirtualKeys). False for a key that keyboards here don't have.
    virtual bool keyIsDown(std::uint16_t keyCode) const = 0;

    virtual ModifierFlags flags() const = 0;
};

}
