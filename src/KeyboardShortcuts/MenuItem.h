#pragma once

#include "KeyboardShortcuts/Shortcut.h"

#include <QString>

#include <vector>

namespace Quillory {

// An item of the program's main menu and what lies below it, as far as keys are concerned.
struct MenuItem {
    QString title;
    // The character of its command key; empty without one. A capital letter stands for the letter with Shift.
    QString keyEquivalent;
    ModifierFlags keyEquivalentModifierMask = ModifierFlags::none;
    std::vector<MenuItem> submenu;

    // The first of `items`, depth first, that the shortcut would call; null without one.
    static MenuItem const* takenBy(
        Shortcut const& shortcut, std::vector<MenuItem> const& items, KeyboardLayout const& layout);
};

}
