#pragma once

#include "linux/tray/StatusFace.h"
#include "platform/StatusItemLook.h"

namespace Quillory {

// A status item in one of the trays that desktops have, for as long as it lives. GUI thread only.
class TrayIcon {
public:
    virtual ~TrayIcon() = default;

    // `look` has the autosave name that the icon was made with.
    virtual void show(StatusItemLook const& look, StatusFace::Style const& style) = 0;
};

}
