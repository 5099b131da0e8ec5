#pragma once

#include "text/TextRange.h"

#include <QString>

#include <optional>

namespace Quillory {

// A range of rendered text that can be copied, and as what.
struct CopyTarget {
    TextRange range;
    QString text; // what goes onto the clipboard
    bool isBlock = false; // a code block: it gets a background and a copy button
    std::optional<QString> accessibilityLabel;

    bool operator==(CopyTarget const&) const = default;
};

}
