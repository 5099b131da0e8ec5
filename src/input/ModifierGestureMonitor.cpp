#include "input/ModifierGestureMonitor.h"

#include "input/ModifierGesturePermission.h"

#include <algorithm>
#include <utility>

namespace Quillory {

namespace {

// Caps Lock, the keypad and Help don't matter.
constexpr auto watchedFlags = ModifierFlags::shift | ModifierFlags::control | ModifierFlags::option
    | ModifierFlags::command | ModifierFlags::function;

}

ModifierGestureMonitor::Operations ModifierGestureMonitor::Operations::of(
    ModifierEvents& events, InputPermission const& permission, KeyState const& keys)
{
    return {
        .observeEvents = [&events](auto receive,
                             auto interrupted) { return events.observe(std::move(receive), std::move(interrupted)); },
        .permissionGranted = [&permission] { return ModifierGesturePermission::isGranted(permission); },
        .keyIsDown = [&keys](std::uint16_t keyCode) { return keys.keyIsDown(keyCode); },
    };
}

ModifierGestureMonitor::ModifierGestureMonitor(Executor& executor, Operations operations)
    : m_executor(executor)
    , m_operations(std::move(operations))
{
}

ModifierGestureMonitor::~ModifierGestureMonitor()
{
    m_lifetime.end();
    m_holdTask.end();
    cancelObservation();
}

void ModifierGestureMonitor::configure(ModifierGesture gesture, bool isEnabled)
{
    if (!mustAct(gesture, isEnabled))
        return;
    reset();
    cancelObservation();
    m_selection = gesture;
    if (gesture != ModifierGesture::off && isEnabled)
        startObserving();
}

bool ModifierGestureMonitor::mustAct(ModifierGesture gesture, bool isEnabled) const
{
    if (gesture != m_selection)
        return true;
    bool const isWanted = gesture != ModifierGesture::off && isEnabled;
    if (!m_observation)
        return isWanted;
    bool const isAlive = m_observation->isActive();
    return (isWanted && !isAlive) || !isEnabled;
}

void ModifierGestureMonitor::startObserving()
{
    m_observation = m_operations.observeEvents(
        m_lifetime.guarded([this](ModifierEvent const& event) { handle(event); }),
        m_lifetime.guarded([this] { reset(); }));
}

void ModifierGestureMonitor::cancelObservation()
{
    if (auto const observation = std::exchange(m_observation, std::nullopt))
        observation->cancel();
}

void ModifierGestureMonitor::reset()
{
    m_holdTask.end();
    if (m_recognizer.cancel() == ModifierGestureRecognizer::Action::end && ended)
        ended();
}

void ModifierGestureMonitor::stop()
{
    reset();
    cancelObservation();
}

void ModifierGestureMonitor::handle(ModifierEvent const& event)
{
    if (!m_operations.permissionGranted()) {
        stop();
        return;
    }
    if (event.type != ModifierEvent::Type::flagsChanged) {
        // Typing and clicking while the key is held is what the reader is shown for.
        if (!m_recognizer.isActive())
            reset();
        return;
    }
    auto const flags = event.flags & watchedFlags;
    auto const flag = modifierFlag(m_selection);
    auto const keys = keyCodes(m_selection);
    bool const isOurKey = std::ranges::find(keys, event.keyCode) != keys.end();
    if (!isOurKey || (flags != ModifierFlags::none && flags != flag)) {
        reset();
        return;
    }
    follow(event, flags == flag);
}

void ModifierGestureMonitor::follow(ModifierEvent const& event, bool isDown)
{
    m_holdTask.end();
    auto const action = m_recognizer.handleFlagsChanged(event.keyCode, isDown, event.timestamp);
    if (action == ModifierGestureRecognizer::Action::end && ended)
        ended();
    if (auto const* second = std::get_if<ModifierGestureRecognizer::SecondDown>(&m_recognizer.state())) {
        m_holdTask = m_executor.after(
            ModifierGestureRecognizer::holdLimit, [this, keyCode = second->keyCode] { checkHold(keyCode); });
    }
}

// The release may never have been seen, so the keyboard is asked.
void ModifierGestureMonitor::checkHold(std::uint16_t keyCode)
{
    if (!m_operations.permissionGranted() || !m_operations.keyIsDown(keyCode)) {
        reset();
        return;
    }
    if (m_recognizer.holdElapsed(m_executor.now()) != ModifierGestureRecognizer::Action::begin) {
        reset();
        return;
    }
    if (began)
        began(modifierFlag(m_selection), keyCode);
}

}
