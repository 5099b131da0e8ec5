#pragma once

#include "textlayout/ColumnWidths.h"
#include "textlayout/LayoutContext.h"

#include <span>
#include <vector>

namespace Quillory {

// A cell whose column is to be measured. Its range ends in a line feed.
struct CellToMeasure {
    TextRange range;
    int column = 0;
    double padding = 0; // on either side
};

// The demands of the columns, going by every cell: the cells that may be widest are laid out, and no other one is wider
// than the widths of its letters add up to. The cells follow one another in the text.
std::vector<ColumnDemand> columnDemands(
    LayoutContext const& context, std::span<CellToMeasure const> cells, std::size_t columns);

}
