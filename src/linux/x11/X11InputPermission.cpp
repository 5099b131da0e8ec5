#include "linux/x11/X11InputPermission.h"

#include "linux/x11/XInput.h"

#include <string_view>

namespace Quillory {

X11InputPermission::X11InputPermission(X11Connection& connection)
    : m_connection(connection)
    , m_hasRawEvents(hasRawEvents())
{
}

bool X11InputPermission::canListenToEvents() const
{
    return m_hasRawEvents && !xcb_connection_has_error(m_connection.handle());
}

bool X11InputPermission::hasRawEvents() const
{
    auto* const xcb = m_connection.handle();
    if (!startXInput(xcb))
        return false;
    XcbOwned<xcb_input_xi_query_device_reply_t> const devices(
        xcb_input_xi_query_device_reply(xcb, xcb_input_xi_query_device(xcb, XCB_INPUT_DEVICE_ALL), nullptr));
    if (!devices)
        return false;
    for (auto device = xcb_input_xi_query_device_infos_iterator(devices.get()); device.rem > 0;
        xcb_input_xi_device_info_next(&device)) {
        std::string_view const name(xcb_input_xi_device_info_name(device.data),
            static_cast<std::size_t>(xcb_input_xi_device_info_name_length(device.data)));
        if (name.starts_with("xwayland-"))
            return false;
    }
    return true;
}

}
