#pragma once

#include "platform/ModifierFlags.h"

#include <Qt>

namespace Quillory {

// The modifier keys of an event: Super is command, Alt is option. Whether a key lies on the keypad doesn't count.
inline ModifierFlags modifierFlags(Qt::KeyboardModifiers modifiers)
{
    auto flags = ModifierFlags::none;
    if (modifiers.testFlag(Qt::ShiftModifier))
        flags = flags | ModifierFlags::shift;
    if (modifiers.testFlag(Qt::ControlModifier))
        flags = flags | ModifierFlags::control;
    if (modifiers.testFlag(Qt::AltModifier))
        flags = flags | ModifierFlags::option;
    if (modifiers.testFlag(Qt::MetaModifier))
        flags = flags | ModifierFlags::command;
    return flags;
}

inline Qt::KeyboardModifiers without(Qt::KeyboardModifiers modifiers, ModifierFlags taken)
{
    for (auto const each : { Qt::ShiftModifier, Qt::ControlModifier, Qt::AltModifier, Qt::MetaModifier }) {
        if (contains(taken, modifierFlags(each)))
            modifiers.setFlag(each, false);
    }
    return modifiers;
}

constexpr ModifierFlags without(ModifierFlags flags, ModifierFlags taken)
{
    return static_cast<ModifierFlags>(static_cast<std::uint32_t>(flags) & ~static_cast<std::uint32_t>(taken));
}

}
