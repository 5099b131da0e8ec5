#pragma once

#include "library/ShortcutSheet.h"

#include <QString>

#include <bitset>
#include <span>

// The shown and the spoken text of a structured sheet's shortcut.
namespace Quillory::ShortcutText {

struct Modifier {
    QStringView name;
    QStringView symbol;
};

// All modifiers in the order in which they are shown and spoken, whatever order a sheet has them in.
std::span<Modifier const, 5> modifiers();

// Which of them the step has, by their positions in modifiers().
using ModifierSet = std::bitset<5>;
ModifierSet modifiersOf(ShortcutSheet::Step const& step);

// The key alone: "Space", "F5".
QString keyText(QString const& key);

// Its steps as shown: "⇧⌘P → K".
QString shown(ShortcutSheet::Shortcut const& shortcut);

// Its steps as spoken: "shift command p, then k".
QString spoken(ShortcutSheet::Shortcut const& shortcut);

}
