#include "linux/x11/X11KeyStrokes.h"

#include "linux/x11/VirtualKeys.h"

#include <QCoreApplication>

#include <utility>

namespace Quillory {

namespace {

constexpr std::uint16_t allModifierBits = 0xff;
constexpr std::uint8_t sentEventBit = 0x80;
constexpr std::uint16_t numLock = 71; // the place of the keypad's Clear

// Absent when a modifier is held that has no flag.
std::optional<ModifierFlags> flagsOf(std::uint16_t state, ModifierMap const& map)
{
    using enum ModifierFlags;
    auto flags = none;
    unsigned known = map.lockCombinations().back();
    for (auto const flag : { control, option, shift, command }) {
        auto const mask = map.serverMask(flag).value_or(0);
        known |= mask;
        if (state & mask)
            flags = flags | flag;
    }
    return state & allModifierBits & ~known ? std::nullopt : std::optional(flags);
}

}

X11KeyStrokes::X11KeyStrokes(X11Connection& connection)
    : m_modifierKeys(connection)
{
}

Registration X11KeyStrokes::observe(Monitor monitor)
{
    if (m_monitors.isEmpty())
        QCoreApplication::instance()->installNativeEventFilter(this);
    return Registration([this, observation = m_monitors.add(std::move(monitor))]() mutable {
        observation.end();
        if (m_monitors.isEmpty())
            QCoreApplication::instance()->removeNativeEventFilter(this);
    });
}

bool X11KeyStrokes::nativeEventFilter(QByteArray const& eventType, void* message, qintptr*)
{
    if (eventType != "xcb_generic_event_t")
        return false;
    auto const& event = *static_cast<xcb_key_press_event_t const*>(message);
    auto const type = event.response_type & ~sentEventBit;
    if (type != XCB_KEY_PRESS && type != XCB_KEY_RELEASE)
        return false;
    auto const phase = type == XCB_KEY_PRESS ? KeyStroke::Phase::down : KeyStroke::Phase::up;
    return m_monitors.tellUntil(Answer::swallow, keyStroke(phase, event.detail, event.state));
}

KeyStroke X11KeyStrokes::keyStroke(KeyStroke::Phase phase, std::uint8_t serverKeyCode, std::uint16_t state)
{
    auto const keyCode = VirtualKeys::virtualKeyCode(serverKeyCode);
    bool const isModifier = m_modifierKeys.current().keyCode(serverKeyCode) || keyCode == numLock;
    return {
        .kind = isModifier ? KeyStroke::Kind::modifier : KeyStroke::Kind::key,
        .phase = phase,
        .keyCode = keyCode,
        .modifiers = flagsOf(state, m_modifierKeys.currentBits()),
    };
}

}
