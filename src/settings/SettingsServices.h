#pragma once

#include "KeyboardShortcuts/recorder/Recorder.h"
#include "library/LibraryStore.h"
#include "platform/Autostart.h"
#include "platform/DesktopHotKeys.h"
#include "platform/DesktopSettings.h"
#include "platform/FileOpener.h"
#include "platform/InputPermission.h"
#include "platform/Screens.h"
#include "platform/UserDefaults.h"
#include "platform/Workspace.h"

#include <QRect>

#include <functional>
#include <optional>

namespace Quillory {

// All that the settings need of the program around them. It outlives them.
struct SettingsServices {
    LibraryStore& store;
    Recorder::Services recorder;
    UserDefaults& defaults;
    Workspace& workspace;
    Screens& screens;
    Executor& executor;
    NotificationCenter& notifications;
    FileOpener& fileOpener;
    InputPermission& permission;
    DesktopSettings& desktopSettings;
    Autostart& autostart;
    DesktopHotKeys* desktopHotKeys = nullptr; // where the desktop may bind the keys
    QString versionText;     // one line
    QString applicationFile; // the program itself
    std::function<std::optional<QRect>()> readerFrame = [] { return std::optional<QRect>(); }; // while it is up
    std::function<QWidget*(QWidget* parent)> makeUpdates = nullptr; // empty where there are no updates
};

}
