#include "X11Desk.h"

#include "linux/x11/X11HotKeys.h"
#include "linux/x11/X11InputPermission.h"
#include "linux/x11/X11ModifierEvents.h"

#include <xcb/xinput.h>

#include <dlfcn.h>

namespace {

bool isInputExtensionHidden = false;

}

// Stands before the library's own, since no server at hand can be started without the input extension.
extern "C" xcb_query_extension_reply_t const* xcb_get_extension_data(xcb_connection_t* xcb, xcb_extension_t* extension)
{
    static constexpr xcb_query_extension_reply_t absent {};
    static auto* const real = reinterpret_cast<decltype(&xcb_get_extension_data)>(
        dlsym(RTLD_NEXT, "xcb_get_extension_data"));
    return isInputExtensionHidden && extension == &xcb_input_id ? &absent : real(xcb, extension);
}

namespace Quillory {
namespace {

class InputPermissionOnX11 : public X11Desk { };

TEST_F(InputPermissionOnX11, Without_the_input_extension_nothing_can_be_listened_to_and_hot_keys_work)
{
    EXPECT_TRUE(X11InputPermission(*connection, sessionOf(*connection)).canListenToEvents());
    isInputExtensionHidden = true;
    X11InputPermission const permission(*connection, sessionOf(*connection));
    EXPECT_FALSE(permission.canListenToEvents());
    EXPECT_FALSE(X11ModifierEvents(*connection, clock, permission).observe([](auto const&) { }, [] { }).has_value());
    EXPECT_TRUE(X11HotKeys(*connection, clock).probe(40, ModifierFlags::control | ModifierFlags::option).has_value());
    isInputExtensionHidden = false;
}

}
}
