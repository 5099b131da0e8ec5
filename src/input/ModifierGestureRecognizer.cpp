#include "input/ModifierGestureRecognizer.h"

#include <utility>

namespace Quillory {

namespace {

using Recognizer = ModifierGestureRecognizer;

struct Transition {
    Recognizer::KeyCode keyCode;
    bool isDown;
    Recognizer::Time timestamp;
};

Recognizer::State next(Recognizer::Idle, Transition const& event)
{
    if (event.isDown)
        return Recognizer::FirstDown { event.keyCode, event.timestamp };
    return Recognizer::Idle {};
}

Recognizer::State next(Recognizer::FirstDown const& state, Transition const& event)
{
    bool const isTap = event.keyCode == state.keyCode && !event.isDown
        && event.timestamp - state.pressed <= Recognizer::tapLimit;
    if (isTap)
        return Recognizer::FirstUp { event.keyCode, event.timestamp };
    return Recognizer::Idle {};
}

Recognizer::State next(Recognizer::FirstUp const& state, Transition const& event)
{
    bool const isSecondPress = event.keyCode == state.keyCode && event.isDown
        && event.timestamp - state.released <= Recognizer::tapLimit;
    if (isSecondPress)
        return Recognizer::SecondDown { event.keyCode, event.timestamp };
    return Recognizer::Idle {};
}

Recognizer::State next(Recognizer::SecondDown const&, Transition const&)
{
    return Recognizer::Idle {};
}

Recognizer::State next(Recognizer::Active const&, Transition const&)
{
    return Recognizer::Idle {};
}

}

std::optional<Recognizer::Action> ModifierGestureRecognizer::handleFlagsChanged(
    KeyCode keyCode, bool isDown, Time timestamp)
{
    bool const wasActive = isActive();
    Transition const event { keyCode, isDown, timestamp };
    m_state = std::visit([&](auto const& state) { return next(state, event); }, m_state);
    return wasActive ? std::optional(Action::end) : std::nullopt;
}

std::optional<Recognizer::Action> ModifierGestureRecognizer::holdElapsed(Time now)
{
    auto const* const second = std::get_if<SecondDown>(&m_state);
    if (!second || now - second->pressed < holdLimit)
        return std::nullopt;
    m_state = Active { second->keyCode };
    return Action::begin;
}

std::optional<Recognizer::Action> ModifierGestureRecognizer::cancel()
{
    bool const wasActive = isActive();
    m_state = Idle {};
    return wasActive ? std::optional(Action::end) : std::nullopt;
}

std::optional<Recognizer::KeyCode> ModifierGestureRecognizer::heldKeyCode() const
{
    if (auto const* const second = std::get_if<SecondDown>(&m_state))
        return second->keyCode;
    if (auto const* const active = std::get_if<Active>(&m_state))
        return active->keyCode;
    return std::nullopt;
}

}
