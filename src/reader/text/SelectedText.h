#pragma once

#include "rendering/AttributedText.h"
#include "text/TextRange.h"

#include <QString>

namespace Quillory {

// A part of a text as other programs get it. Pictures and the gaps beside them leave nothing. Tabs stand between the cells
// of a table's row, as spreadsheets take them.
QString selectedText(AttributedText const& text, TextRange range);

}
