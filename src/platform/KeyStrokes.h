#pragma once

#include "platform/ModifierFlags.h"

#include <cstdint>
#include <optional>

namespace Quillory {

// A key that went down, as far as a shortcut can be made of it.
struct KeyStroke {
    enum class Kind { key, modifier }; // locks are modifiers too

    Kind kind = Kind::key;
    std::optional<std::uint16_t> keyCode;   // virtual; absent for keys that have none, such as media keys
    std::optional<ModifierFlags> modifiers; // absent while one is held that no shortcut can have, such as AltGr

    bool operator==(KeyStroke const&) const = default;
};

// Reads the native codes of the toolkit's key events. Main thread only.
class KeyStrokes {
public:
    virtual ~KeyStrokes() = default;

    virtual KeyStroke keyStroke(std::uint32_t nativeScanCode, std::uint32_t nativeModifiers) = 0;
};

}
