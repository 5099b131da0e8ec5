#pragma once

#include "linux/x11/FollowedModifierKeys.h"
#include "platform/KeyStrokes.h"

namespace Quillory {

// Key events of the toolkit, whose native codes are the server's.
class X11KeyStrokes final : public KeyStrokes {
public:
    // `connection` outlives it.
    explicit X11KeyStrokes(X11Connection& connection);

    KeyStroke keyStroke(std::uint32_t nativeScanCode, std::uint32_t nativeModifiers) override;

private:
    FollowedModifierKeys m_modifierKeys;
};

}
