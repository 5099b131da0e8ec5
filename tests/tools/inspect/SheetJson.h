#pragma once

#include "JsonWriter.h"

#include "library/Sheet.h"

#include <optional>

namespace Quillory {

// Writes a sheet as one object; with a text size its rendering too.
void writeSheet(JsonWriter& json, Sheet const& sheet, std::optional<double> renderTextSize);

}
