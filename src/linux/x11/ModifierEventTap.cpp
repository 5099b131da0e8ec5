#include "linux/x11/ModifierEventTap.h"

#include "linux/x11/VirtualKeys.h"
#include "linux/x11/X11ModifierEvents.h"

#include <utility>

namespace Quillory {

namespace {

// Of a key that has no virtual key code.
constexpr std::uint16_t unknownKey = 0xffff;

// Wheels arrive as presses of buttons 4 to 7, which nobody presses.
std::optional<ModifierEvent::Type> typeOfButton(std::uint32_t button)
{
    using enum ModifierEvent::Type;
    if (button >= 4 && button <= 7)
        return std::nullopt;
    return button == 1 ? leftMouseDown : button == 3 ? rightMouseDown : otherMouseDown;
}

}

std::shared_ptr<ModifierEventTap> ModifierEventTap::start(
    X11ModifierEvents& source, ModifierEvents::Receiver receive, ModifierEvents::Interruption interrupted)
{
    std::shared_ptr<ModifierEventTap> tap(new ModifierEventTap(source, std::move(receive), std::move(interrupted)));
    return tap->listen() ? tap : nullptr;
}

ModifierEventTap::ModifierEventTap(
    X11ModifierEvents& source, ModifierEvents::Receiver receive, ModifierEvents::Interruption interrupted)
    : m_source(source)
    , m_receive(std::move(receive))
    , m_interrupted(std::move(interrupted))
{
}

bool ModifierEventTap::listen()
{
    auto selection = m_source.selectEvents();
    if (!selection)
        return false;
    m_selection = std::move(*selection);
    m_down = heldKeys(m_source.m_connection.handle());
    m_events = m_source.m_connection.observeEvents([weak = weak_from_this()](xcb_generic_event_t const& event) {
        // A receiver may let go of the observation, and with it of the tap.
        if (auto const self = weak.lock())
            self->handle(event);
    });
    return true;
}

bool ModifierEventTap::isActive() const
{
    return m_selection.isActive() && !xcb_connection_has_error(m_source.m_connection.handle());
}

void ModifierEventTap::stop()
{
    m_events.end();
    m_selection.end();
}

void ModifierEventTap::handle(xcb_generic_event_t const& event)
{
    if (event.response_type != XCB_GE_GENERIC)
        return;
    auto const& generic = reinterpret_cast<xcb_ge_generic_event_t const&>(event);
    if (generic.extension != m_source.m_extension)
        return;
    switch (generic.event_type) {
    case XCB_INPUT_RAW_KEY_PRESS:
        handleKey(reinterpret_cast<xcb_input_raw_key_press_event_t const&>(event), true);
        break;
    case XCB_INPUT_RAW_KEY_RELEASE:
        handleKey(reinterpret_cast<xcb_input_raw_key_release_event_t const&>(event), false);
        break;
    case XCB_INPUT_RAW_BUTTON_PRESS:
        handleButton(reinterpret_cast<xcb_input_raw_button_press_event_t const&>(event));
        break;
    case XCB_INPUT_HIERARCHY:
        handleDeviceChange();
        break;
    default:
        break;
    }
}

void ModifierEventTap::handleKey(xcb_input_raw_key_press_event_t const& event, bool isDown)
{
    auto const key = static_cast<std::uint8_t>(event.detail);
    if (m_down.test(key) == isDown)
        return;
    m_down.set(key, isDown);
    if (auto const modifier = m_source.m_modifierKeys.current().keyCode(key)) {
        m_source.m_clock.note(event.time);
        report(ModifierEvent::Type::flagsChanged, *modifier, event.time);
    } else if (isDown) {
        report(ModifierEvent::Type::keyDown, VirtualKeys::virtualKeyCode(key).value_or(unknownKey), event.time);
    }
}

void ModifierEventTap::handleButton(xcb_input_raw_button_press_event_t const& event)
{
    if (auto const type = typeOfButton(event.detail))
        report(*type, 0, event.time);
}

// A keyboard that goes takes along what was held on it, without another word.
void ModifierEventTap::handleDeviceChange()
{
    m_interrupted();
    bool const isTrusted = m_source.m_permission.isAccessibilityTrusted();
    bool const canListen = m_source.m_permission.canListenToEvents();
    if (isTrusted || canListen)
        m_down = heldKeys(m_source.m_connection.handle());
    else
        stop();
}

void ModifierEventTap::report(ModifierEvent::Type type, std::uint16_t keyCode, xcb_timestamp_t time)
{
    auto const now = std::chrono::steady_clock::now().time_since_epoch();
    m_receive({ .type = type,
        .keyCode = keyCode,
        .flags = m_source.m_modifierKeys.current().flags(m_down),
        .timestamp = m_source.m_serverTime.onMonotonicClock(time, now) });
}

}
