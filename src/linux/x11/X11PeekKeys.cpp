#include "linux/x11/X11PeekKeys.h"

#include <utility>

namespace Quillory {

X11PeekKeys::X11PeekKeys(X11Connection& connection, KeyState const& keys, X11Session session, IsOwnWindow isOwnWindow)
    : m_connection(connection)
    , m_keys(keys)
    , m_session(session)
    , m_isOwnWindow(std::move(isOwnWindow))
{
}

PeekKeys::Known X11PeekKeys::known(std::optional<std::uint16_t> keyCode) const
{
    if (m_session == X11Session::guest)
        return { std::nullopt, hasKeyboard() ? std::optional(m_keys.flags()) : std::nullopt };
    return { keyCode ? std::optional(m_keys.keyIsDown(*keyCode)) : std::nullopt, m_keys.flags() };
}

bool X11PeekKeys::hasKeyboard() const
{
    auto* const xcb = m_connection.handle();
    XcbOwned<xcb_get_input_focus_reply_t> const focus(
        xcb_get_input_focus_reply(xcb, xcb_get_input_focus(xcb), nullptr));
    return focus && m_isOwnWindow(focus->focus);
}

}
