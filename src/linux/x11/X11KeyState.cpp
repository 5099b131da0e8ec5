#include "linux/x11/X11KeyState.h"

#include "linux/x11/XcbXkb.h"

namespace Quillory {

X11KeyState::X11KeyState(X11Connection& connection)
    : m_connection(connection)
    , m_modifierKeys(connection)
{
}

bool X11KeyState::keyIsDown(std::uint16_t keyCode) const
{
    auto const held = heldKeys(m_connection.handle());
    return (m_modifierKeys.current().keys(keyCode) & held).any();
}

ModifierFlags X11KeyState::flags() const
{
    auto flags = m_modifierKeys.current().flags(heldKeys(m_connection.handle()));
    auto const state = stateOfModifiers();
    for (auto const each :
        { ModifierFlags::shift, ModifierFlags::control, ModifierFlags::option, ModifierFlags::command }) {
        auto const bits = m_modifierKeys.currentBits().serverMask(each);
        if (bits && (state & *bits))
            flags = flags | each;
    }
    return state & XCB_MOD_MASK_LOCK ? flags | ModifierFlags::capsLock : flags;
}

std::uint16_t X11KeyState::stateOfModifiers() const
{
    if (!m_modifierKeys.hasExtension())
        return 0;
    auto* const xcb = m_connection.handle();
    XcbOwned<xcb_xkb_get_state_reply_t> const state(
        xcb_xkb_get_state_reply(xcb, xcb_xkb_get_state(xcb, XCB_XKB_ID_USE_CORE_KBD), nullptr));
    return state ? state->mods : std::uint16_t { 0 };
}

}
