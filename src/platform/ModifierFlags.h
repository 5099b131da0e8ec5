#pragma once

#include <cstdint>

namespace Quillory {

// The modifier keys of an event or a shortcut, as a set of bits.
enum class ModifierFlags : std::uint32_t {
    none = 0,
    capsLock = 0x10000,
    shift = 0x20000,
    control = 0x40000,
    option = 0x80000,
    command = 0x100000,
    numericPad = 0x200000,
    help = 0x400000,
    function = 0x800000,
};

constexpr ModifierFlags operator|(ModifierFlags a, ModifierFlags b)
{
    return static_cast<ModifierFlags>(static_cast<std::uint32_t>(a) | static_cast<std::uint32_t>(b));
}

constexpr ModifierFlags operator&(ModifierFlags a, ModifierFlags b)
{
    return static_cast<ModifierFlags>(static_cast<std::uint32_t>(a) & static_cast<std::uint32_t>(b));
}

constexpr bool contains(ModifierFlags flags, ModifierFlags required)
{
    return (flags & required) == required;
}

}
