#pragma once

#include "library/ShortcutSheet.h"

#include <QByteArray>

namespace Quillory {

inline constexpr qsizetype largestSheet = 2 * 1024 * 1024; // bytes

// As people write them, of at least that many bytes: sections, commands in code, a table, notes.
QByteArray ordinarySheet(qsizetype size);

// 2,000 entries in 100 sections, with two alternatives of two steps each: the most that a structured sheet may hold.
ShortcutSheet largestStructuredSheet();

}
