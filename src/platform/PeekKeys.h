#pragma once

#include "platform/ModifierFlags.h"

#include <cstdint>
#include <optional>

namespace Quillory {

// What the session lets the program know of the keys that hold a peek. Main thread only.
class PeekKeys {
public:
    struct Known {
        // Absent where only the desktop knows, and for a peek that no key of ours began.
        std::optional<bool> keyIsDown;
        // Absent while another program has the keyboard, on a session that tells of keys only those who have it. Right
        // after our window got the keyboard they may still be those of an earlier time.
        std::optional<ModifierFlags> flags;
        bool operator==(Known const&) const = default;
    };

    virtual ~PeekKeys() = default;

    // By virtual key code (see VirtualKeys), of the key that began the peek.
    virtual Known known(std::optional<std::uint16_t> keyCode) const = 0;
};

}
