#include "linux/x11/FollowedModifierKeys.h"

#include "linux/x11/XcbXkb.h"

namespace Quillory {

namespace {

constexpr std::uint8_t sentEventBit = 0x80;

}

FollowedModifierKeys::FollowedModifierKeys(X11Connection& connection)
    : m_connection(connection)
{
    startExtension();
    m_events = connection.observeEvents([this](auto const& event) {
        if (tellsOfNewMap(event)) {
            m_keys.reset();
            m_bits.reset();
        }
    });
}

// The plain events of a changed map leave out a map that is replaced as a whole.
void FollowedModifierKeys::startExtension()
{
    auto* const xcb = m_connection.handle();
    auto const* extension = xcb_get_extension_data(xcb, &xcb_xkb_id);
    if (!extension || !extension->present)
        return;
    XcbOwned<xcb_xkb_use_extension_reply_t> const use(xcb_xkb_use_extension_reply(
        xcb, xcb_xkb_use_extension(xcb, XCB_XKB_MAJOR_VERSION, XCB_XKB_MINOR_VERSION), nullptr));
    if (!use || !use->supported)
        return;
    constexpr std::uint16_t events = XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY;
    constexpr std::uint16_t parts = XCB_XKB_MAP_PART_KEY_SYMS | XCB_XKB_MAP_PART_MODIFIER_MAP;
    xcb_xkb_select_events(xcb, XCB_XKB_ID_USE_CORE_KBD, events, 0, events, parts, parts, nullptr);
    xcb_flush(xcb);
    m_firstExtensionEvent = extension->first_event;
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

bool FollowedModifierKeys::tellsOfNewMap(xcb_generic_event_t const& event) const
{
    auto const type = event.response_type & ~sentEventBit;
    if (type == XCB_MAPPING_NOTIFY)
        return true;
    return type == m_firstExtensionEvent
        && (event.pad0 == XCB_XKB_NEW_KEYBOARD_NOTIFY || event.pad0 == XCB_XKB_MAP_NOTIFY);
}

}
