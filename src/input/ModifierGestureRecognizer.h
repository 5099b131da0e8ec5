#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <variant>

namespace Quillory {

// Decides when one modifier key was tapped, pressed again and held: a plain value without clock or timer. It is told
// the transitions of keys that belong to the gesture; both presses must be of the same key. Whatever does not fit
// ends the attempt and is used up by that.
class ModifierGestureRecognizer {
public:
    using KeyCode = std::uint16_t;
    // On one monotonic clock, whichever it is. Integers, so that the inclusive limits are exact.
    using Time = std::chrono::nanoseconds;

    // The longest time from the first press to its release, and from there to the second press.
    static constexpr Time tapLimit = std::chrono::milliseconds(300);
    // The shortest time that the second press must have lasted.
    static constexpr Time holdLimit = std::chrono::milliseconds(350);

    struct Idle {
        bool operator==(Idle const&) const = default;
    };
    struct FirstDown {
        KeyCode keyCode;
        Time pressed;
        bool operator==(FirstDown const&) const = default;
    };
    struct FirstUp {
        KeyCode keyCode;
        Time released;
        bool operator==(FirstUp const&) const = default;
    };
    struct SecondDown {
        KeyCode keyCode;
        Time pressed;
        bool operator==(SecondDown const&) const = default;
    };
    struct Active {
        KeyCode keyCode;
        bool operator==(Active const&) const = default;
    };
    using State = std::variant<Idle, FirstDown, FirstUp, SecondDown, Active>;

    enum class Action { begin, end };

    ModifierGestureRecognizer() = default;
    // In the midst of a gesture.
    explicit ModifierGestureRecognizer(State state)
        : m_state(state)
    {
    }

    // One transition of a key of the gesture; `isDown` says that the modifier is down now.
    std::optional<Action> handleFlagsChanged(KeyCode keyCode, bool isDown, Time timestamp);

    // To be called when the hold may have lasted long enough.
    std::optional<Action> holdElapsed(Time now);

    std::optional<Action> cancel();

    State const& state() const { return m_state; }
    bool isActive() const { return std::holds_alternative<Active>(m_state); }

    // The key that is held: present from the second press on.
    std::optional<KeyCode> heldKeyCode() const;

    bool operator==(ModifierGestureRecognizer const&) const = default;

private:
    State m_state = Idle {};
};

}
