#include "linux/x11/ModifierMap.h"

#include "linux/x11/X11Connection.h"

#include <xkbcommon/xkbcommon-keysyms.h>

#include <array>
#include <span>
#include <utility>

namespace Quillory {

ModifierMap ModifierMap::read(xcb_connection_t* connection)
{
    auto const* setup = xcb_get_setup(connection);
    auto const keyCount = static_cast<std::uint8_t>(setup->max_keycode - setup->min_keycode + 1);
    auto const modifiersCookie = xcb_get_modifier_mapping(connection);
    auto const symbolsCookie = xcb_get_keyboard_mapping(connection, setup->min_keycode, keyCount);
    XcbOwned<xcb_get_modifier_mapping_reply_t> modifiers(
        xcb_get_modifier_mapping_reply(connection, modifiersCookie, nullptr));
    XcbOwned<xcb_get_keyboard_mapping_reply_t> symbols(
        xcb_get_keyboard_mapping_reply(connection, symbolsCookie, nullptr));
    ModifierMap map;
    if (!modifiers || !symbols || symbols->keysyms_per_keycode == 0)
        return map;

    std::span const keySymbols(xcb_get_keyboard_mapping_keysyms(symbols.get()),
        static_cast<std::size_t>(xcb_get_keyboard_mapping_keysyms_length(symbols.get())));
    auto const* keyCodes = xcb_get_modifier_mapping_keycodes(modifiers.get());
    std::size_t const keysPerModifier = modifiers->keycodes_per_modifier;
    for (std::size_t modifier = 0; modifier < 8; ++modifier) {
        for (std::size_t key = 0; key < keysPerModifier; ++key) {
            auto const keyCode = keyCodes[modifier * keysPerModifier + key];
            if (keyCode < setup->min_keycode)
                continue;
            // The first symbol is what the key gives by itself.
            auto const index = static_cast<std::size_t>(keyCode - setup->min_keycode) * symbols->keysyms_per_keycode;
            if (index < keySymbols.size())
                map.add(keySymbols[index], { static_cast<std::uint16_t>(1U << modifier), keyCode });
        }
    }
    return map;
}

void ModifierMap::add(std::uint32_t keySymbol, Modifier modifier)
{
    static constexpr auto meanings = std::to_array<std::pair<std::uint32_t, Modifier ModifierMap::*>>({
        { XKB_KEY_Control_L, &ModifierMap::m_control },
        { XKB_KEY_Control_R, &ModifierMap::m_control },
        { XKB_KEY_Alt_L, &ModifierMap::m_option },
        { XKB_KEY_Alt_R, &ModifierMap::m_option },
        { XKB_KEY_Shift_L, &ModifierMap::m_shift },
        { XKB_KEY_Shift_R, &ModifierMap::m_shift },
        { XKB_KEY_Super_L, &ModifierMap::m_command },
        { XKB_KEY_Super_R, &ModifierMap::m_command },
        { XKB_KEY_Num_Lock, &ModifierMap::m_numLock },
        { XKB_KEY_Scroll_Lock, &ModifierMap::m_scrollLock },
    });
    for (auto const& [symbol, meaning] : meanings) {
        if (symbol == keySymbol && (this->*meaning).bit == 0)
            this->*meaning = modifier;
    }
}

std::optional<std::vector<ModifierMap::Modifier>> ModifierMap::modifiersFor(ModifierFlags modifiers) const
{
    std::vector<Modifier> found;
    for (auto const& [flag, modifier] : { std::pair { ModifierFlags::control, m_control },
             std::pair { ModifierFlags::option, m_option }, std::pair { ModifierFlags::shift, m_shift },
             std::pair { ModifierFlags::command, m_command }, std::pair { ModifierFlags::function, Modifier {} } }) {
        if (!contains(modifiers, flag))
            continue;
        if (modifier.bit == 0)
            return std::nullopt;
        found.push_back(modifier);
    }
    return found;
}

std::optional<std::uint16_t> ModifierMap::serverMask(ModifierFlags modifiers) const
{
    auto const found = modifiersFor(modifiers);
    if (!found)
        return std::nullopt;
    unsigned mask = 0;
    for (auto const& modifier : *found)
        mask |= modifier.bit;
    return static_cast<std::uint16_t>(mask);
}

std::optional<std::vector<std::uint8_t>> ModifierMap::keyCodes(ModifierFlags modifiers) const
{
    auto const found = modifiersFor(modifiers);
    if (!found)
        return std::nullopt;
    std::vector<std::uint8_t> codes;
    for (auto const& modifier : *found)
        codes.push_back(modifier.keyCode);
    return codes;
}

std::vector<std::uint16_t> ModifierMap::lockCombinations() const
{
    std::vector<std::uint16_t> combinations { 0 };
    for (std::uint16_t const bit : { std::uint16_t { XCB_MOD_MASK_LOCK }, m_numLock.bit, m_scrollLock.bit }) {
        if (bit == 0)
            continue;
        for (std::size_t index = 0, count = combinations.size(); index < count; ++index)
            combinations.push_back(static_cast<std::uint16_t>(combinations[index] | bit));
    }
    return combinations;
}

}
