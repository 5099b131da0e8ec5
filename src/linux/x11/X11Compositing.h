#pragma once

#include "linux/x11/X11Connection.h"
#include "platform/Compositing.h"

namespace Quillory {

// Follows who owns the selection of the screen's compositor. Main thread only.
class X11Compositing final : public Compositing {
public:
    explicit X11Compositing(X11Connection& connection);

    bool isRunning() const override { return m_isRunning; }
    Registration observeChanges(std::function<void()> changed) override { return m_observers.add(std::move(changed)); }

private:
    xcb_window_t owner() const;
    bool follow();
    void handle(xcb_generic_event_t const& event);

    X11Connection& m_connection;
    xcb_atom_t m_selection; // that a compositor of the screen owns
    bool m_isRunning;
    std::uint8_t m_firstEvent = 0; // of the extension
    Observers<void()> m_observers;
    Registration m_events;
};

}
