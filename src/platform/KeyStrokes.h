#pragma once

#include "platform/ModifierFlags.h"
#include "platform/Registration.h"

#include <cstdint>
#include <functional>
#include <optional>

namespace Quillory {

// A key that went down or up, as far as a shortcut can be made of it.
struct KeyStroke {
    enum class Kind { key, modifier }; // locks are modifiers too
    enum class Phase { down, up };

    Kind kind = Kind::key;
    Phase phase = Phase::down;
    std::optional<std::uint16_t> keyCode;   // virtual; absent for keys that have none, such as media keys
    std::optional<ModifierFlags> modifiers; // absent while one is held that no shortcut can have, such as AltGr

    bool operator==(KeyStroke const&) const = default;
};

// The keys that are struck in windows of the program, before an input method makes text of them, as it does of dead
// keys. A key that repeats goes down and up. Main thread only.
class KeyStrokes {
public:
    enum class Answer { passOn, swallow };
    using Monitor = std::function<Answer(KeyStroke const&)>;

    virtual ~KeyStrokes() = default;

    // A stroke that the monitor swallows goes no further.
    virtual Registration observe(Monitor monitor) = 0;
};

}
