#pragma once

#include "linux/x11/FollowedModifierKeys.h"
#include "platform/KeyState.h"

namespace Quillory {

// Asks the server at each call, so that a release which never reached the program is seen. Costs a round trip.
class X11KeyState final : public KeyState {
public:
    // `connection` outlives it.
    explicit X11KeyState(X11Connection& connection);

    bool keyIsDown(std::uint16_t keyCode) const override;

    // Modifiers of held keys, and those that are latched or locked.
    ModifierFlags flags() const override;

private:
    std::uint16_t stateOfModifiers() const;

    X11Connection& m_connection;
    mutable FollowedModifierKeys m_modifierKeys;
};

}
