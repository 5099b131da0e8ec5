#pragma once

#include <QtGlobal>

#include <algorithm>

namespace Quillory {

// What is selected of a text: from where the selection began to where it was moved last. UTF-16 positions.
struct TextSelection {
    qsizetype anchor = 0;
    qsizetype head = 0;

    qsizetype start() const { return std::min(anchor, head); }
    qsizetype end() const { return std::max(anchor, head); }
    qsizetype length() const { return end() - start(); }
    bool isEmpty() const { return anchor == head; }
    TextSelection clamped(qsizetype textLength) const
    {
        return { std::clamp<qsizetype>(anchor, 0, textLength), std::clamp<qsizetype>(head, 0, textLength) };
    }

    bool operator==(TextSelection const&) const = default;
};

}
