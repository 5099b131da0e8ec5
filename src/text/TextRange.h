#pragma once

#include <QtGlobal>

namespace Quillory {

// A range of a text, in UTF-16 units.
struct TextRange {
    qsizetype location = 0;
    qsizetype length = 0;

    qsizetype end() const { return location + length; }
    bool contains(qsizetype index) const { return index >= location && index - location < length; }
    bool operator==(TextRange const&) const = default;
};

}
