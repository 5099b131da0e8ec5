#pragma once

#include "linux/x11/X11Connection.h"
#include "linux/x11/X11Session.h"
#include "platform/InputPermission.h"

namespace Quillory {

// An X server hands its raw keys to whoever asks, so there is nothing to be granted: it has them for as long as it runs,
// or never. A permission that comes later, which other systems know, there is not.
class X11InputPermission final : public InputPermission {
public:
    // Asks the server once. `connection` outlives it.
    X11InputPermission(X11Connection& connection, X11Session session);

    // X knows no trust in single programs.
    bool isAccessibilityTrusted() const override { return false; }

    // False as well once the server is gone, and on a guest, which sees only what is typed into windows of its own.
    bool canListenToEvents() const override;

    bool canBeGranted() const override { return m_hasRawEvents; }

    // There is nobody to ask.
    void requestListenAccess() override { }

private:
    X11Connection& m_connection;
    bool const m_hasRawEvents;
};

}
