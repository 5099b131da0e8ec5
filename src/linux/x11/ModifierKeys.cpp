#include "linux/x11/ModifierKeys.h"

#include "linux/x11/VirtualKeys.h"

#include <xkbcommon/xkbcommon-keysyms.h>

#include <algorithm>
#include <span>

namespace Quillory {

namespace {

struct Row {
    std::uint32_t keySymbol;
    std::uint16_t keyCode;
    ModifierFlags flag;
};

constexpr std::uint16_t leftOption = 58;
constexpr std::uint16_t rightOption = 61;
constexpr std::uint16_t capsLock = 57;
constexpr std::uint16_t functionKey = 63;

constexpr auto table = std::to_array<Row>({
    { XKB_KEY_Shift_L, 56, ModifierFlags::shift },
    { XKB_KEY_Shift_R, 60, ModifierFlags::shift },
    { XKB_KEY_Control_L, 59, ModifierFlags::control },
    { XKB_KEY_Control_R, 62, ModifierFlags::control },
    { XKB_KEY_Alt_L, leftOption, ModifierFlags::option },
    { XKB_KEY_Alt_R, rightOption, ModifierFlags::option },
    { XKB_KEY_Super_L, 55, ModifierFlags::command },
    { XKB_KEY_Super_R, 54, ModifierFlags::command },
    { XKB_KEY_Caps_Lock, capsLock, ModifierFlags::none },
    { XKB_KEY_Shift_Lock, capsLock, ModifierFlags::none },
    { XKB_KEY_ISO_Lock, capsLock, ModifierFlags::none },
});

bool isModifierSymbol(std::uint32_t keySymbol)
{
    return (keySymbol >= XKB_KEY_Shift_L && keySymbol <= XKB_KEY_Hyper_R)
        || (keySymbol >= XKB_KEY_ISO_Lock && keySymbol <= XKB_KEY_ISO_Level5_Lock) || keySymbol == XKB_KEY_Mode_switch;
}

// AltGr stands on an Alt key nearly always, mostly on the right one.
std::optional<std::uint16_t> optionKeyOfAltGr(std::uint8_t serverKeyCode, std::uint32_t keySymbol)
{
    bool const isAltGr = keySymbol == XKB_KEY_ISO_Level3_Shift || keySymbol == XKB_KEY_ISO_Level3_Latch
        || keySymbol == XKB_KEY_Mode_switch;
    auto const place = VirtualKeys::virtualKeyCode(serverKeyCode);
    return isAltGr && (place == leftOption || place == rightOption) ? place : std::nullopt;
}

}

ModifierKeys ModifierKeys::read(xcb_connection_t* connection)
{
    ModifierKeys keys;
    auto const* setup = xcb_get_setup(connection);
    if (!setup)
        return keys;
    auto const keyCount = static_cast<std::uint8_t>(setup->max_keycode - setup->min_keycode + 1);
    XcbOwned<xcb_get_keyboard_mapping_reply_t> const mapping(xcb_get_keyboard_mapping_reply(
        connection, xcb_get_keyboard_mapping(connection, setup->min_keycode, keyCount), nullptr));
    if (!mapping)
        return keys;
    std::span const symbols(xcb_get_keyboard_mapping_keysyms(mapping.get()),
        static_cast<std::size_t>(xcb_get_keyboard_mapping_keysyms_length(mapping.get())));
    std::size_t key = setup->min_keycode;
    // The first symbol of each key is what it gives by itself.
    for (std::size_t index = 0; index < symbols.size(); index += mapping->keysyms_per_keycode)
        keys.add(static_cast<std::uint8_t>(key++), symbols[index]);
    return keys;
}

void ModifierKeys::add(std::uint8_t serverKeyCode, std::uint32_t keySymbol)
{
    if (!isModifierSymbol(keySymbol))
        return;
    auto const row = std::ranges::find(table, keySymbol, &Row::keySymbol);
    m_keyCodes[serverKeyCode] = row != table.end() ? row->keyCode
                                                   : optionKeyOfAltGr(serverKeyCode, keySymbol).value_or(functionKey);
}

std::optional<std::uint16_t> ModifierKeys::keyCode(std::uint8_t serverKeyCode) const
{
    return m_keyCodes[serverKeyCode];
}

KeySet ModifierKeys::keys(std::uint16_t keyCode) const
{
    KeySet keys;
    for (std::size_t key = 0; key < m_keyCodes.size(); ++key)
        keys[key] = m_keyCodes[key] == keyCode;
    bool const isModifier = std::ranges::find(table, keyCode, &Row::keyCode) != table.end() || keyCode == functionKey;
    if (auto const place = VirtualKeys::serverKeyCode(keyCode); place && !isModifier)
        keys.set(*place);
    return keys;
}

ModifierFlags ModifierKeys::flags(KeySet const& held) const
{
    auto flags = ModifierFlags::none;
    for (std::size_t key = 0; key < held.size(); ++key) {
        auto const row = held[key] ? std::ranges::find(table, m_keyCodes[key], &Row::keyCode) : table.end();
        if (row != table.end())
            flags = flags | row->flag;
    }
    return flags;
}

}
