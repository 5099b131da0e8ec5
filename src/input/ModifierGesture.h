#pragma once

#include "platform/ModifierFlags.h"

#include <QString>
#include <QStringView>

#include <array>
#include <cstdint>
#include <optional>
#include <span>

namespace Quillory {

// Which modifier key summons the reader by a double tap and a hold.
enum class ModifierGesture { off, shift, option };

// In the order in which a user is offered them.
inline constexpr std::array allModifierGestures { ModifierGesture::off, ModifierGesture::shift,
    ModifierGesture::option };

// The text that stands for it in the stored preferences.
QString rawValue(ModifierGesture gesture);

// Of exactly that text; absent for any other.
std::optional<ModifierGesture> modifierGestureFromRawValue(QStringView text);

// For the user.
QString displayLabel(ModifierGesture gesture);

// The modifier it watches, `none` for `off`.
ModifierFlags modifierFlag(ModifierGesture gesture);

// The virtual key codes of that modifier, left and right; empty for `off`.
std::span<std::uint16_t const> keyCodes(ModifierGesture gesture);

}
