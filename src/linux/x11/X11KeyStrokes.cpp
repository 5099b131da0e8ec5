#include "linux/x11/X11KeyStrokes.h"

#include "linux/x11/VirtualKeys.h"

namespace Quillory {

namespace {

constexpr std::uint32_t allModifierBits = 0xff;
constexpr std::uint16_t numLock = 71; // the place of the keypad's Clear

// Absent when a modifier is held that has no flag.
std::optional<ModifierFlags> flagsOf(std::uint32_t state, ModifierMap const& map)
{
    auto flags = ModifierFlags::none;
    std::uint32_t known = map.lockCombinations().back();
    for (auto const flag :
        { ModifierFlags::control, ModifierFlags::option, ModifierFlags::shift, ModifierFlags::command }) {
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

KeyStroke X11KeyStrokes::keyStroke(std::uint32_t nativeScanCode, std::uint32_t nativeModifiers)
{
    auto const serverKeyCode = static_cast<std::uint8_t>(nativeScanCode);
    auto const keyCode = VirtualKeys::virtualKeyCode(serverKeyCode);
    bool const isModifier = m_modifierKeys.current().keyCode(serverKeyCode) || keyCode == numLock;
    return {
        .kind = isModifier ? KeyStroke::Kind::modifier : KeyStroke::Kind::key,
        .keyCode = keyCode,
        .modifiers = flagsOf(nativeModifiers, m_modifierKeys.currentBits()),
    };
}

}
