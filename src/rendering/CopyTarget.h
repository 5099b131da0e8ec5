#pragma once

#include <QString>

#include <optional>

namespace Quillory {

// A range of rendered text that can be copied, and as what.
struct CopyTarget {
    struct Range {
        qsizetype location = 0; // UTF-16 units
        qsizetype length = 0;
        qsizetype end() const { return location + length; }
        bool contains(qsizetype index) const { return index >= location && index - location < length; }
        bool operator==(Range const&) const = default;
    };

    Range range;
    QString text; // what goes onto the clipboard
    bool isBlock = false; // a code block: it gets a background and a copy button
    std::optional<QString> accessibilityLabel;

    bool operator==(CopyTarget const&) const = default;
};

}
