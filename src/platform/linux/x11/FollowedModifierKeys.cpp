#include "platform/linux/x11/FollowedModifierKeys.h"

#include "platform/linux/x11/XcbXkb.h"

namespace Quillory {

namespace {

constexpr std::uint8_t sentEventBit = 0x80;

}

FollowedModifierKeys::FollowedModifierKeys(X11Connection& connection)
    : m_connection(connection)
{
    auto const* extension = xcb_get_extension_data(connection.handle(), &xcb_xkb_id);
    if (extension && extension->present)
        m_firstExtensionEvent = extension->first_event;
    m_events = connection.observeEvents([this](auto const& event) {
        if (tellsOfNewMap(event)) {
            m_keys.reset();
            m_bits.reset();
        }
    });
}

ModifierKeys const& FollowedModifierKeys::current()
{
    if (!m_keys)
        m_keys = ModifierKeys::read(m_connection.handle());
    return *m_keys;
}

ModifierMap const& FollowedModifierKeys::currentBits()
{
    if (!m_bits)
        m_bits = ModifierMap::read(m_connection.handle());
    return *m_bits;
}

// The server sends the one or the other, by what else was asked of it on the same connection.
bool FollowedModifierKeys::tellsOfNewMap(xcb_generic_event_t const& event) const
{
    auto const type = event.response_type & ~sentEventBit;
    if (type == XCB_MAPPING_NOTIFY)
        return true;
    return type == m_firstExtensionEvent
        && (event.pad0 == XCB_XKB_NEW_KEYBOARD_NOTIFY || event.pad0 == XCB_XKB_MAP_NOTIFY);
}

}
