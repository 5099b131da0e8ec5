#pragma once

#include "linux/x11/X11Connection.h"

#include <bitset>

namespace Quillory {

// A set of keys by server key code.
using KeySet = std::bitset<256>;

// The keys that are down now, of all keyboards together. Waits for the server; empty when it is gone.
inline KeySet heldKeys(xcb_connection_t* connection)
{
    KeySet held;
    XcbOwned<xcb_query_keymap_reply_t> const keys(
        xcb_query_keymap_reply(connection, xcb_query_keymap(connection), nullptr));
    for (std::size_t key = 0; keys && key < held.size(); ++key)
        held[key] = keys->keys[key / 8] & (1U << (key % 8));
    return held;
}

}
