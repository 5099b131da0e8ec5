#pragma once

#include "platform/DesktopSettings.h"

#include <QStringList>

namespace Quillory {

// The settings programs of the desktop that the session names itself after.
class DesktopSettingsPrograms final : public DesktopSettings {
public:
    bool openKeyboardShortcuts() override;

    // What can be tried, best first, as programs with their arguments. `desktops` is XDG_CURRENT_DESKTOP.
    static QList<QStringList> keyboardShortcuts(QString const& desktops);
};

}
