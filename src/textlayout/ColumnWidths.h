#pragma once

#include <span>
#include <vector>

namespace Quillory {

// The widths that a column of a table asks for, in points.
struct ColumnDemand {
    double narrowest = 0; // no word is broken
    double widest = 0;    // nothing wraps
    double floor = 0;     // never less than this
    bool operator==(ColumnDemand const&) const = default;
};

// Gives every column its widest width where that fits. Otherwise narrow columns keep theirs and the others share what is
// left, each at least its narrowest width while that fits, and at least its floor in any case: the sum may then be larger
// than what is available.
std::vector<double> fittedColumnWidths(std::span<ColumnDemand const> demands, double available);

}
