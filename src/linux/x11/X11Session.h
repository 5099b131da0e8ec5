#pragma once

#include "linux/x11/X11Connection.h"

namespace Quillory {

// Whose the keyboard is on this X server.
enum class X11Session {
    native, // the server's own, or that of the one window which shows the whole server
    guest,  // a Wayland compositor's: the server gets keys only while a window of its own has the keyboard
};

// By the input devices that the server has, whatever the environment says. Waits for the server.
X11Session sessionOf(X11Connection const& connection);

}
