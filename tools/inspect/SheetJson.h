#pragma once

#include "JsonWriter.h"

#include "library/Sheet.h"

#include <optional>

namespace Quillory {

// The page that a sheet is rendered for, in points.
struct Page {
    double width = 0; // matters to structured sheets alone
    double textSize = 0;
};

// Writes a sheet as one object; with a page its rendering too.
void writeSheet(JsonWriter& json, Sheet const& sheet, std::optional<Page> const& page);

// Writes the rendering alone; null for a sheet that has none. Text is measured in the same way on every machine.
void writeRendering(JsonWriter& json, Sheet const& sheet, Page const& page);

}
