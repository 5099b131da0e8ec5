#pragma once

#include "platform/KeyboardLayout.h"
#include "platform/SystemShortcuts.h"

namespace Quillory {

// The settings of the desktop that the session names itself after: GNOME and its kin, KDE, or Xfce.
class DesktopSystemShortcuts final : public SystemShortcuts {
public:
    // The layout, which tells the keys of the symbols that the settings name, outlives it.
    explicit DesktopSystemShortcuts(KeyboardLayout const& layout);

    std::vector<SymbolicHotKey> symbolicHotKeys() const override;

private:
    KeyboardLayout const& m_layout;
};

}
