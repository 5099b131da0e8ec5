#pragma once

#include "linux/x11/X11Connection.h"
#include "platform/Compositing.h"

namespace Quillory {

// Follows who owns the selection of the screen's compositor, and what its window manager supports. Main thread only.
class X11Compositing final : public Compositing {
public:
    explicit X11Compositing(X11Connection& connection);

    bool isRunning() const override { return m_isRunning; }
    bool leavesShadowsToWindows() const override { return m_isRunning && m_hasFrameExtents; }
    Registration observeChanges(std::function<void()> changed) override { return m_observers.add(std::move(changed)); }

private:
    xcb_window_t owner() const;
    bool hasFrameExtents() const;
    bool follow();
    void handle(xcb_generic_event_t const& event);
    void become(bool isRunning, bool hasFrameExtents);

    X11Connection& m_connection;
    xcb_atom_t m_selection; // that a compositor of the screen owns
    xcb_atom_t m_supported; // that a window manager lists its abilities in
    bool m_isRunning;
    bool m_hasFrameExtents;
    std::uint8_t m_firstEvent = 0; // of the extension
    Observers<void()> m_observers;
    Registration m_events;
};

}
