#pragma once

namespace Quillory {

// Whether this session lets the program listen to keys that are meant for others. Asking it shows nothing to the user
// and costs nothing: it is asked at every event. Main thread only.
class InputPermission {
public:
    virtual ~InputPermission() = default;

    // The two ways to have it; either is enough.
    virtual bool isAccessibilityTrusted() const = 0;
    virtual bool canListenToEvents() const = 0;

    // Whether there is anything to ask for: false on a session that shows keys to no program but the one they are for.
    virtual bool canBeGranted() const = 0;

    // Asks for the second way, if need be by a question to the user: only ever in answer to a button.
    virtual void requestListenAccess() = 0;
};

}
