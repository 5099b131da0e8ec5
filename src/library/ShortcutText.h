#pragma once

#include "library/KeyNames.h"
#include "library/ShortcutSheet.h"

#include <QString>

#include <bitset>
#include <span>

// The shown and the spoken text of a structured sheet's shortcut.
namespace Quillory::ShortcutText {

struct Modifier {
    QStringView name;
    QStringView symbol;
    QStringView word;
};

// All modifiers in the order in which they are shown and spoken, whatever order a sheet has them in.
std::span<Modifier const, 5> modifiers();

// Which of them the step has, by their positions in modifiers().
using ModifierSet = std::bitset<5>;
ModifierSet modifiersOf(ShortcutSheet::Step const& step);

// The key alone: "⎋" or "Esc", "F5".
QString keyText(QString const& key, KeyNames names);

// Between the keys of a step that are named by words.
inline constexpr QStringView wordJoint = u"+";

// Its steps as shown: "⇧⌘P → K" or "Shift+Super+P → K".
QString shown(ShortcutSheet::Shortcut const& shortcut, KeyNames names);

// Its steps as spoken: "shift command p, then k" or "Shift Super P, then K".
QString spoken(ShortcutSheet::Shortcut const& shortcut, KeyNames names);

}
