#pragma once

#include "KeyboardShortcuts/SessionHotKeys.h"
#include "linux/freedesktop/PortalHotKeys.h"

namespace Quillory {

// The hot keys of a Wayland session: the portal's, and where the desktop has none of it those that are grabbed, which
// work while a window of the X server has the keyboard. Main thread only.
class WaylandKeys {
public:
    // `grabs` outlives it.
    WaylandKeys(HotKeys& grabs, PortalHotKeys::Operations operations);

    HotKeys& hotKeys() { return m_hotKeys; }
    DesktopHotKeys& desktopHotKeys() { return m_portal; }

private:
    PortalHotKeys m_portal;
    SessionHotKeys m_hotKeys;
};

}
