#include "linux/x11/X11Session.h"

#include "linux/x11/XInput.h"

#include <string_view>

namespace Quillory {

X11Session sessionOf(X11Connection const& connection)
{
    auto* const xcb = connection.handle();
    if (!startXInput(xcb))
        return X11Session::native;
    XcbOwned<xcb_input_xi_query_device_reply_t> const devices(
        xcb_input_xi_query_device_reply(xcb, xcb_input_xi_query_device(xcb, XCB_INPUT_DEVICE_ALL), nullptr));
    if (!devices)
        return X11Session::native;
    for (auto device = xcb_input_xi_query_device_infos_iterator(devices.get()); device.rem > 0;
        xcb_input_xi_device_info_next(&device)) {
        std::string_view const name(xcb_input_xi_device_info_name(device.data),
            static_cast<std::size_t>(xcb_input_xi_device_info_name_length(device.data)));
        if (name.starts_with("xwayland-"))
            return X11Session::guest;
    }
    return X11Session::native;
}

}
