#pragma once

#include "linux/x11/X11Connection.h"

#include <xcb/xinput.h>

#include <optional>

namespace Quillory {

// Tells the server that this connection speaks the version of the input extension that reports raw keys and buttons
// also while another program holds the keyboard. Gives the number that the extension's events bear; absent when the
// server has no such version.
inline std::optional<std::uint8_t> startXInput(xcb_connection_t* connection)
{
    constexpr std::uint16_t major = 2;
    constexpr std::uint16_t minor = 2;
    auto const* extension = xcb_get_extension_data(connection, &xcb_input_id);
    if (!extension || !extension->present)
        return std::nullopt;
    XcbOwned<xcb_input_xi_query_version_reply_t> const version(
        xcb_input_xi_query_version_reply(connection, xcb_input_xi_query_version(connection, major, minor), nullptr));
    bool const isNewEnough = version
        && (version->major_version > major || (version->major_version == major && version->minor_version >= minor));
    return isNewEnough ? std::optional(extension->major_opcode) : std::nullopt;
}

}
