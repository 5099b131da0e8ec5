#pragma once

#include "platform/KeyState.h"
#include "platform/ModifierEvents.h"
#include "support/FakeInputPermission.h"

#include <chrono>

namespace Quillory {

// A desk with a keyboard and a mouse. Each act of the user returns when what follows from it has been delivered.
class ModifierEventsDesk {
public:
    virtual ~ModifierEventsDesk() = default;

    virtual ModifierEvents& events() = 0;
    virtual KeyState const& keys() = 0;
    virtual std::chrono::nanoseconds now() const = 0;

    virtual void press(std::uint16_t keyCode) = 0;
    virtual void release(std::uint16_t keyCode) = 0;
    virtual void holdKeyUntilItRepeats(std::uint16_t keyCode) = 0;
    virtual void click(ModifierEvent::Type button) = 0;

    // A keyboard is plugged in or pulled out.
    virtual void changeKeyboards() = 0;

    FakeInputPermission permission;
};

}
