#pragma once

#include "linux/x11/X11Connection.h"
#include "platform/InputPermission.h"

namespace Quillory {

// An X server hands its raw keys to whoever asks, so there is nothing to be granted: it has them for as long as it runs,
// or never. A permission that comes later, which other systems know, there is not.
class X11InputPermission final : public InputPermission {
public:
    // Asks the server once. `connection` outlives it.
    explicit X11InputPermission(X11Connection& connection);

    // X knows no trust in single programs.
    bool isAccessibilityTrusted() const override { return false; }

    // False as well once the server is gone, and on a server that is itself a guest of another desktop: that one only
    // passes on what is typed into windows of X programs.
    bool canListenToEvents() const override;

    // There is nobody to ask.
    void requestListenAccess() override { }

private:
    bool hasRawEvents() const;

    X11Connection& m_connection;
    bool const m_hasRawEvents;
};

}
