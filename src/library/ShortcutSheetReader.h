#pragma once

#include "library/ShortcutSheet.h"

namespace Quillory {

// Maps a JSON document onto the model without validating it. Strict JSON in UTF-8, an initial byte order mark aside;
// of a key that occurs twice the last value counts; unknown keys are ignored; 1.0 and 1e0 are the integer 1.
// Time and memory grow with the length of the document alone, however it is nested.
std::expected<ShortcutSheet, ShortcutSheet::FormatError> readShortcutSheet(QByteArrayView bytes);

}
