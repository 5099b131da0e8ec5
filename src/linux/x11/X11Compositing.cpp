#include "linux/x11/X11Compositing.h"

#include <xcb/xfixes.h>

namespace Quillory {

namespace {

constexpr std::uint8_t eventBits = 0x7F; // without that of a sent one

}

// Our connections are to the first screen of the display.
X11Compositing::X11Compositing(X11Connection& connection)
    : m_connection(connection)
    , m_selection(connection.atom("_NET_WM_CM_S0"))
    , m_supported(connection.atom("_NET_SUPPORTED"))
    , m_isRunning(owner() != XCB_WINDOW_NONE)
    , m_hasFrameExtents(hasFrameExtents())
{
    m_connection.listenOnRoot(XCB_EVENT_MASK_PROPERTY_CHANGE);
    if (!follow())
        m_firstEvent = 0;
    m_events = m_connection.observeEvents([this](auto const& event) { handle(event); });
}

xcb_window_t X11Compositing::owner() const
{
    auto* const xcb = m_connection.handle();
    XcbOwned<xcb_get_selection_owner_reply_t> const reply(
        xcb_get_selection_owner_reply(xcb, xcb_get_selection_owner(xcb, m_selection), nullptr));
    return reply ? reply->owner : xcb_window_t { XCB_WINDOW_NONE };
}

bool X11Compositing::hasFrameExtents() const
{
    return m_connection.lists(m_connection.root(), "_NET_SUPPORTED", m_connection.atom("_GTK_FRAME_EXTENTS"));
}

bool X11Compositing::follow()
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

void X11Compositing::handle(xcb_generic_event_t const& event)
{
    auto const type = event.response_type & eventBits;
    if (type == XCB_PROPERTY_NOTIFY) {
        auto const& notice = reinterpret_cast<xcb_property_notify_event_t const&>(event);
        if (notice.window == m_connection.root() && notice.atom == m_supported)
            become(m_isRunning, hasFrameExtents());
    } else if (m_firstEvent != 0 && type == m_firstEvent + XCB_XFIXES_SELECTION_NOTIFY) {
        auto const& notice = reinterpret_cast<xcb_xfixes_selection_notify_event_t const&>(event);
        if (notice.selection == m_selection)
            become(notice.owner != XCB_WINDOW_NONE, m_hasFrameExtents);
    }
}

void X11Compositing::become(bool isRunning, bool hasFrameExtents)
{
    if (isRunning == m_isRunning && hasFrameExtents == m_hasFrameExtents)
        return;
    m_isRunning = isRunning;
    m_hasFrameExtents = hasFrameExtents;
    m_observers.tell();
}

}
