#pragma once

#include "textlayout/LayoutContext.h"

#include <vector>

namespace Quillory {

// A paragraph longer than this is laid out in stretches, so that no unit costs more than some milliseconds.
inline constexpr qsizetype longestStretch = 8'192;

enum class TableUnits { whole, none };

// The starts of a range's units, and at last its end: paragraphs split at line feeds alone, stretches of overlong
// paragraphs, cut between words where there are any, and whole tables.
std::vector<quint32> textUnitStarts(AttributedText const& text, TextRange range, TableUnits tables);

// The starts of chapters of about so many characters, and at last the end of the text: at paragraphs, outside tables.
std::vector<quint32> chapterStarts(AttributedText const& text, qsizetype characters);

}
