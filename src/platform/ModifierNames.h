#pragma once

#include "platform/ModifierFlags.h"

#include <QString>
#include <QStringView>

#include <optional>

// Modifiers as they are written on command lines and to other programs: "ctrl+alt".
namespace Quillory::ModifierNames {

// In any case, by the names of the keys or of the flags: ctrl or control, alt or option, shift, super or command. Absent
// for anything else, an empty text too.
std::optional<ModifierFlags> read(QStringView text);

// Empty for none. Flags that are no modifier of a shortcut are left out.
QString write(ModifierFlags modifiers);

}
