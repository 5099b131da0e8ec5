#pragma once

#include "library/ShortcutSheet.h"

#include <vector>

namespace Quillory {

// How much a section of a structured sheet has to show, whatever the width of its column. Characters are counted as a
// person counts them.
struct SectionExtent {
    struct Entry {
        qsizetype characters = 0; // of title and text
        double lines = 0;         // in addition to those
    };

    qsizetype characters = 0; // of the description
    std::vector<Entry> entries;

    static std::vector<SectionExtent> ofAll(ShortcutSheet const& sheet);

    // As estimated for lines of so many characters.
    double lines(double lineLength) const;
};

}
