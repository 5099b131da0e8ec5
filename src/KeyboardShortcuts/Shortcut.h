#pragma once

#include "platform/ModifierFlags.h"

#include <QString>

#include <cstdint>
#include <optional>

namespace Quillory {

// A key with modifiers, as it is stored: a virtual key code and a Carbon modifier mask.
struct Shortcut {
    std::int64_t carbonKeyCode = 0;
    std::int64_t carbonModifiers = 0;

    // The same modifiers in the other mask; bits that stand for none of them vanish, in both directions.
    static std::int64_t carbonModifiersOf(ModifierFlags modifiers);
    ModifierFlags modifiers() const;

    // JSON: an object with both fields as integers. Reading gives nothing for text that is no such object;
    // further members don't matter.
    QString encoded() const;
    static std::optional<Shortcut> decode(QString const& text);

    bool operator==(Shortcut const&) const = default;
};

}
