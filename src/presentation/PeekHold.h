#pragma once

#include "platform/ModifierFlags.h"

namespace Quillory {

// Whether the keys of a peek are still held: its key and all of its modifiers. Others may be held beside them.
constexpr bool peekStillHeld(bool keyDown, ModifierFlags flags, ModifierFlags required)
{
    return keyDown && contains(flags, required);
}

}
