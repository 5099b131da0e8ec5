#pragma once

#include "KeyboardShortcuts/ShortcutStorage.h"
#include "platform/DesktopHotKeys.h"

#include <QCoreApplication>

namespace Quillory {

// Has the desktop bind the shortcuts that are stored, now and whenever one changes. Main thread only.
class DesktopWishes {
    Q_DECLARE_TR_FUNCTIONS(DesktopWishes)
public:
    // All outlive it.
    DesktopWishes(DesktopHotKeys& desktopHotKeys, ShortcutStorage const& shortcuts, NotificationCenter& notifications);

    // What the desktop is to bind. A peek with the keys of the toggle is not, since it does nothing.
    static QList<DesktopHotKeys::Wish> of(ShortcutStorage const& shortcuts);

private:
    Registration m_storageChanges;
};

}
