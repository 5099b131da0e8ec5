#pragma once

#include "library/ShortcutSheet.h"

#include <optional>

namespace Quillory {

// The first rule that a decoded sheet breaks: depth first, in the order of the document. Absent for a valid sheet.
std::optional<ShortcutSheet::FormatError> findFormatError(ShortcutSheet const& sheet);

}
