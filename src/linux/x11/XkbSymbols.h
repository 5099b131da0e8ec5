#pragma once

#include "linux/x11/VirtualKeys.h"

#include <QString>

#include <array>
#include <cstdint>
#include <optional>

#include <xkbcommon/xkbcommon.h>

// What the keys of a keyboard map give by themselves.
namespace Quillory::XkbSymbols {

// Absent when that is several symbols or none.
inline std::optional<xkb_keysym_t> ofKey(xkb_keymap* keymap, xkb_keycode_t key, xkb_layout_index_t layout)
{
    xkb_keysym_t const* symbols = nullptr;
    auto const count = xkb_keymap_key_get_syms_by_level(keymap, key, layout, 0, &symbols);
    return count == 1 ? std::optional(*symbols) : std::nullopt;
}

// X11's name of the symbol of the key with this virtual key code: "k", "Prior".
inline std::optional<QString> nameOfKey(xkb_keymap* keymap, std::uint16_t virtualKeyCode, xkb_layout_index_t layout)
{
    auto const key = VirtualKeys::serverKeyCode(virtualKeyCode);
    auto const symbol = key && keymap ? ofKey(keymap, *key, layout) : std::nullopt;
    constexpr std::size_t longestName = 64;
    std::array<char, longestName> name {};
    if (!symbol || xkb_keysym_get_name(*symbol, name.data(), name.size()) <= 0)
        return std::nullopt;
    return QString::fromLatin1(name.data());
}

}
