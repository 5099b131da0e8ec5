#pragma once

#include "platform/Registration.h"

#include <functional>

namespace Quillory {

// Events of the user's session as a whole: sleep, wake, lock. Main thread only. Where the system tells of none, nothing
// is called.
class SessionEvents {
public:
    using Action = std::function<void()>;

    virtual ~SessionEvents() = default;

    // The computer is about to sleep. The action must be quick: the system waits for it, but not for long.
    virtual Registration observeWillSleep(Action action) = 0;

    virtual Registration observeDidWake(Action action) = 0;

    // The screen was locked, or another user's session took the screen and the keyboard.
    virtual Registration observeSessionDidResignActive(Action action) = 0;
};

}
