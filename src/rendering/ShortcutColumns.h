#pragma once

#include "rendering/SectionExtent.h"

#include <span>
#include <vector>

namespace Quillory {

// How the sections of a structured sheet are shared out among columns of about the same height. Lengths are points.
struct ShortcutColumns {
    double contentWidth = 0;             // of a column
    std::vector<qsizetype> sectionCounts; // of each column, in order

    // At most six columns, never more than there are sections, and one at least.
    static ShortcutColumns arrange(std::span<SectionExtent const> sections, double width, double textSize);

    int count() const { return static_cast<int>(sectionCounts.size()); }

    bool operator==(ShortcutColumns const&) const = default;
};

}
