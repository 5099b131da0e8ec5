#pragma once

namespace Quillory {

// The programs in which the user sets the desktop itself up. Main thread only.
class DesktopSettings {
public:
    virtual ~DesktopSettings() = default;

    // Shows where the desktop's own keys are set. False where no such program could be started.
    virtual bool openKeyboardShortcuts() = 0;
};

}
