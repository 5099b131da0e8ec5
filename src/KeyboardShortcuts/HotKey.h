#pragma once

#include "KeyboardShortcuts/Shortcut.h"
#include "platform/Registration.h"

#include <cstdint>
#include <functional>
#include <optional>

namespace Quillory {

class HotKeyCenter;

// One system-wide hot key. Its owner keeps it alive; the center only knows of it. The center outlives it.
class HotKey {
public:
    using Action = std::function<void()>;

    // Takes the center's next id. Does nothing before it is registered there.
    HotKey(HotKeyCenter& center, std::int64_t carbonKeyCode, std::int64_t carbonModifiers, Action onKeyDown,
        Action onKeyUp);
    ~HotKey();
    HotKey(HotKey const&) = delete;
    HotKey& operator=(HotKey const&) = delete;

    std::int64_t const carbonKeyCode;
    std::int64_t const carbonModifiers;
    std::optional<KeyCombination> const combination; // both, as the keyboard has them
    Action const onKeyDown;
    Action const onKeyUp;
    std::uint32_t const id;

    // When it was registered, and later can't be again.
    Action onRegistrationFailed;

    // Active while the system has it.
    Registration eventHotKeyRef;

private:
    HotKeyCenter& m_center;
};

}
