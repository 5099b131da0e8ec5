#pragma once

#include "platform/Registration.h"

#include <functional>

namespace Quillory {

// Whether the window system draws windows one through the other, so that what is transparent in one lets through what
// lies below; elsewhere it is black. Main thread only.
class Compositing {
public:
    virtual ~Compositing() = default;

    virtual bool isRunning() const = 0;

    // Whether it runs and a window may draw a shadow around itself, which then counts for nothing where windows are
    // placed. Elsewhere shadows are the compositor's affair.
    virtual bool leavesShadowsToWindows() const = 0;

    // Of either.
    virtual Registration observeChanges(std::function<void()> changed) = 0;
};

}
