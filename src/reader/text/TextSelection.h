#pragma once

#include "text/TextRange.h"

#include <algorithm>

namespace Quillory {

// A selection in a text: from where the selection began to where it was moved last. UTF-16 positions.
struct TextSelection {
    qsizetype anchor = 0;
    qsizetype head = 0;

    // All of both and what lies between them, the head in the second.
    static TextSelection across(TextRange from, TextRange to)
    {
        if (to.location < from.location)
            return { from.end(), to.location };
        return { from.location, std::max(from.end(), to.end()) };
    }

    qsizetype start() const { return std::min(anchor, head); }
    qsizetype end() const { return std::max(anchor, head); }
    qsizetype length() const { return end() - start(); }
    TextRange range() const { return { start(), length() }; }
    bool isEmpty() const { return anchor == head; }
    TextSelection clamped(qsizetype textLength) const
    {
        return { std::clamp<qsizetype>(anchor, 0, textLength), std::clamp<qsizetype>(head, 0, textLength) };
    }

    bool operator==(TextSelection const&) const = default;
};

}
