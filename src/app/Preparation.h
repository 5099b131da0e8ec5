#pragma once

#include "StartOptions.h"

#include "KeyboardShortcuts/ShortcutStorage.h"
#include "platform/DesktopHotKeys.h"
#include "platform/FolderBookmarks.h"
#include "platform/KeyboardLayout.h"
#include "platform/UserDefaults.h"

#include <QString>
#include <QStringList>

#include <expected>

namespace Quillory {

// Stores what the command line asks for, before anything has read the settings. The error is a sentence for the user;
// nothing is stored then.
std::expected<void, QString> prepareSettings(
    StartOptions const& options, UserDefaults& defaults, FolderBookmarks& bookmarks, ShortcutStorage& shortcuts);

// How the reader is called with what is stored, one sentence for each shortcut, or with what the desktop has made of it
// where that binds the keys.
QStringList howToCall(
    ShortcutStorage const& shortcuts, KeyboardLayout const& layout, DesktopHotKeys const* desktopHotKeys);

// As on the keys themselves: "Ctrl+Alt+K".
QString inWords(Shortcut const& shortcut, KeyboardLayout const& layout);

}
