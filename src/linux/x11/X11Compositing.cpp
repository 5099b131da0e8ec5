#include "linux/x11/X11Compositing.h"

#include <utility>

namespace Quillory {

namespace {

constexpr std::uint8_t eventBits = 0x7F; // without that of a sent one

}

// Our connections are to the first screen of the display.
X11Compositing::X11Compositing(X11Connection& connection)
    : m_connection(connection)
    , m_compositor(connection, "_NET_WM_CM_S0")
    , m_supported(connection.atom("_NET_SUPPORTED"))
    , m_hasFrameExtents(hasFrameExtents())
{
    m_compositorChanges = m_compositor.observeChanges([this] { m_observers.tell(); });
    m_connection.listenOnRoot(XCB_EVENT_MASK_PROPERTY_CHANGE);
    m_events = m_connection.observeEvents([this](auto const& event) { handle(event); });
}

bool X11Compositing::hasFrameExtents() const
{
    return m_connection.lists(m_connection.root(), "_NET_SUPPORTED", m_connection.atom("_GTK_FRAME_EXTENTS"));
}

void X11Compositing::handle(xcb_generic_event_t const& event)
{
    if ((event.response_type & eventBits) != XCB_PROPERTY_NOTIFY)
        return;
    auto const& notice = reinterpret_cast<xcb_property_notify_event_t const&>(event);
    if (notice.window != m_connection.root() || notice.atom != m_supported)
        return;
    auto const now = hasFrameExtents();
    if (std::exchange(m_hasFrameExtents, now) != now)
        m_observers.tell();
}

}
