#include "input/ModifierGesture.h"

#include <QCoreApplication>

#include <algorithm>
#include <utility>

namespace Quillory {

namespace {

constexpr std::array<std::uint16_t, 2> shiftKeyCodes { 56, 60 };
constexpr std::array<std::uint16_t, 2> optionKeyCodes { 58, 61 };

struct Row {
    char const* raw;
    char const* label;
    ModifierFlags flag;
    std::span<std::uint16_t const> keyCodes;
};

constexpr std::array rows {
    Row { "off", QT_TRANSLATE_NOOP("ModifierGesture", "Off"), ModifierFlags::none, {} },
    Row {
        "shift", QT_TRANSLATE_NOOP("ModifierGesture", "Double Shift, then hold"), ModifierFlags::shift, shiftKeyCodes },
    Row { "option", QT_TRANSLATE_NOOP("ModifierGesture", "Double Option, then hold"), ModifierFlags::option,
        optionKeyCodes },
};

Row const& rowOf(ModifierGesture gesture)
{
    return rows[static_cast<std::size_t>(std::to_underlying(gesture))];
}

}

QString rawValue(ModifierGesture gesture)
{
    return QString::fromLatin1(rowOf(gesture).raw);
}

std::optional<ModifierGesture> modifierGestureFromRawValue(QStringView text)
{
    auto const found = std::ranges::find_if(
        allModifierGestures, [&](ModifierGesture gesture) { return text == QLatin1StringView(rowOf(gesture).raw); });
    return found == allModifierGestures.end() ? std::nullopt : std::optional(*found);
}

QString displayLabel(ModifierGesture gesture)
{
    return QCoreApplication::translate("ModifierGesture", rowOf(gesture).label);
}

ModifierFlags modifierFlag(ModifierGesture gesture)
{
    return rowOf(gesture).flag;
}

std::span<std::uint16_t const> keyCodes(ModifierGesture gesture)
{
    return rowOf(gesture).keyCodes;
}

}
