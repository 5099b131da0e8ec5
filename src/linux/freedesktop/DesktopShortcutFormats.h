#pragma once

#include "platform/KeyboardLayout.h"
#include "platform/SystemShortcuts.h"

#include <QByteArray>
#include <QString>

#include <optional>
#include <vector>

// How desktops write down their shortcuts. What names no key of the present layout is left out.
namespace Quillory::DesktopShortcutFormats {

// "<Control><Alt>t", as GNOME and Xfce write it.
std::optional<SymbolicHotKey> fromAccelerator(QString const& accelerator, KeyboardLayout const& layout);

// Lines of "schema key value" as `gsettings list-recursively` prints them, or values alone.
std::vector<SymbolicHotKey> fromSettingsListing(QString const& listing, KeyboardLayout const& layout);

// KDE's kglobalshortcutsrc.
std::vector<SymbolicHotKey> fromGlobalShortcuts(QString const& text, KeyboardLayout const& layout);

// Xfce's xfce4-keyboard-shortcuts.xml.
std::vector<SymbolicHotKey> fromKeyboardChannel(QByteArray const& xml, KeyboardLayout const& layout);

}
