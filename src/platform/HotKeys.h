#pragma once

#include "platform/ModifierFlags.h"
#include "platform/Registration.h"

#include <QString>

#include <cstdint>
#include <expected>
#include <functional>

namespace Quillory {

// System-wide hot keys. Main thread only.
class HotKeys {
public:
    enum class Phase { pressed, released };
    using Handler = std::function<void(Phase)>;

    // Why a key could not be had: held by another program, not on this keyboard, or no such service here.
    struct Refusal {
        enum class Reason { taken, unknownKey, unavailable };
        Reason reason = Reason::unavailable;
        bool operator==(Refusal const&) const = default;
    };

    virtual ~HotKeys() = default;

    // Calls `handler` once when the key goes down with exactly these modifiers (locks aside) and once when it is let
    // go, whatever has the focus and whichever other hot keys are down; auto-repeat gives nothing. A registration that
    // ends while its key is down gives no release. `keyCode` is a virtual key code (see VirtualKeys).
    virtual std::expected<Registration, Refusal>
    registerHotKey(std::uint16_t keyCode, ModifierFlags modifiers, Handler handler) = 0;

    // From here on other keys that go down are the front window's again, though a hot key is still held.
    virtual void yieldKeyboard() = 0;

    // Whether that combination could be had: tries, and lets it go at once. One that was registered here counts as had.
    virtual std::expected<void, Refusal> probe(std::uint16_t keyCode, ModifierFlags modifiers) = 0;
};

}
