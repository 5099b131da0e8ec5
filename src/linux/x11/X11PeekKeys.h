#pragma once

#include "linux/x11/X11Connection.h"
#include "linux/x11/X11Session.h"
#include "platform/KeyState.h"
#include "platform/PeekKeys.h"

#include <functional>

namespace Quillory {

// Asks the server at each call. A guest of a Wayland compositor is never told of the key that began a peek, and of
// modifiers only while a window of ours has the keyboard.
class X11PeekKeys final : public PeekKeys {
public:
    using IsOwnWindow = std::function<bool(std::uint32_t window)>;

    // `connection` and `keys` outlive it.
    X11PeekKeys(X11Connection& connection, KeyState const& keys, X11Session session, IsOwnWindow isOwnWindow);

    Known known(std::optional<std::uint16_t> keyCode) const override;

private:
    bool hasKeyboard() const;

    X11Connection& m_connection;
    KeyState const& m_keys;
    X11Session const m_session;
    IsOwnWindow const m_isOwnWindow;
};

}
