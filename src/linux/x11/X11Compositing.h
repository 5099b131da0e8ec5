#pragma once

#include "linux/x11/X11SelectionOwner.h"
#include "platform/Compositing.h"

namespace Quillory {

// Follows who owns the selection of the screen's compositor, and what its window manager supports. Main thread only.
class X11Compositing final : public Compositing {
public:
    explicit X11Compositing(X11Connection& connection);

    bool isRunning() const override { return m_compositor.isThere(); }
    bool leavesShadowsToWindows() const override { return isRunning() && m_hasFrameExtents; }
    Registration observeChanges(std::function<void()> changed) override { return m_observers.add(std::move(changed)); }

private:
    bool hasFrameExtents() const;
    void handle(xcb_generic_event_t const& event);

    X11Connection& m_connection;
    X11SelectionOwner m_compositor;
    xcb_atom_t m_supported; // that a window manager lists its abilities in
    bool m_hasFrameExtents;
    Observers<void()> m_observers;
    Registration m_compositorChanges;
    Registration m_events;
};

}
