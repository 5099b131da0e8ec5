#pragma once

#include "linux/x11/X11Connection.h"

namespace Quillory {

// Follows whether anybody owns a selection, by which programs say that they serve the screen. Main thread only.
class X11SelectionOwner {
public:
    // The connection outlives it.
    X11SelectionOwner(X11Connection& connection, char const* selection);

    bool isThere() const { return m_isThere; }
    Registration observeChanges(std::function<void()> changed) { return m_observers.add(std::move(changed)); }

private:
    xcb_window_t owner() const;
    bool follow();
    void handle(xcb_generic_event_t const& event);

    X11Connection& m_connection;
    xcb_atom_t m_selection;
    bool m_isThere;
    std::uint8_t m_firstEvent = 0; // of the extension
    Observers<void()> m_observers;
    Registration m_events;
};

}
