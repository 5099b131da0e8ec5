#include "linux/x11/X11SelectionOwner.h"

#include <xcb/xfixes.h>

namespace Quillory {

namespace {

constexpr std::uint8_t eventBits = 0x7F; // without that of a sent one

}

X11SelectionOwner::X11SelectionOwner(X11Connection& connection, char const* selection)
    : m_connection(connection)
    , m_selection(connection.atom(selection))
    , m_isThere(owner() != XCB_WINDOW_NONE)
{
    if (follow())
        m_events = m_connection.observeEvents([this](auto const& event) { handle(event); });
}

xcb_window_t X11SelectionOwner::owner() const
{
    auto* const xcb = m_connection.handle();
    XcbOwned<xcb_get_selection_owner_reply_t> const reply(
        xcb_get_selection_owner_reply(xcb, xcb_get_selection_owner(xcb, m_selection), nullptr));
    return reply ? reply->owner : xcb_window_t { XCB_WINDOW_NONE };
}

bool X11SelectionOwner::follow()
{
    auto* const xcb = m_connection.handle();
    auto const* const extension = xcb_get_extension_data(xcb, &xcb_xfixes_id);
    if (!extension || !extension->present)
        return false;
    m_firstEvent = extension->first_event;
    XcbOwned<xcb_xfixes_query_version_reply_t> const version(
        xcb_xfixes_query_version_reply(xcb, xcb_xfixes_query_version(xcb, 2, 0), nullptr));
    constexpr std::uint32_t everyEnd = XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER
        | XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY
        | XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE;
    return version
        && m_connection.succeeded(
            xcb_xfixes_select_selection_input_checked(xcb, m_connection.root(), m_selection, everyEnd));
}

void X11SelectionOwner::handle(xcb_generic_event_t const& event)
{
    if ((event.response_type & eventBits) != m_firstEvent + XCB_XFIXES_SELECTION_NOTIFY)
        return;
    auto const& notice = reinterpret_cast<xcb_xfixes_selection_notify_event_t const&>(event);
    if (notice.selection != m_selection || m_isThere == (notice.owner != XCB_WINDOW_NONE))
        return;
    m_isThere = !m_isThere;
    m_observers.tell();
}

}
