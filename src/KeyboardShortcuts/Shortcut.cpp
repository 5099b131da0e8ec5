#include "KeyboardShortcuts/Shortcut.h"

#include <nlohmann/json.hpp>

#include <array>
#include <cmath>
#include <limits>

namespace Quillory {

namespace {

struct ModifierBits {
    std::int64_t carbon;
    ModifierFlags flag;
};

constexpr auto modifierBits = std::to_array<ModifierBits>({
    { 0x1000, ModifierFlags::control },
    { 0x800, ModifierFlags::option },
    { 0x200, ModifierFlags::shift },
    { 0x100, ModifierFlags::command },
    { 0x20000, ModifierFlags::function },
});

// 40.0 and 4e1 are the integer 40.
std::optional<std::int64_t> integer(nlohmann::json const& object, char const* key)
{
    auto const member = object.find(key);
    if (member == object.end())
        return std::nullopt;
    if (member->is_number_unsigned()) {
        auto const value = member->get<std::uint64_t>();
        if (value > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max()))
            return std::nullopt;
        return static_cast<std::int64_t>(value);
    }
    if (member->is_number_integer())
        return member->get<std::int64_t>();
    if (!member->is_number_float())
        return std::nullopt;
    auto const value = member->get<double>();
    constexpr double beyond = 9223372036854775808.0; // 2^63
    if (std::trunc(value) != value || value < -beyond || value >= beyond)
        return std::nullopt;
    return static_cast<std::int64_t>(value);
}

}

std::int64_t Shortcut::carbonModifiersOf(ModifierFlags modifiers)
{
    std::int64_t mask = 0;
    for (auto const& bits : modifierBits) {
        if (contains(modifiers, bits.flag))
            mask |= bits.carbon;
    }
    return mask;
}

ModifierFlags Shortcut::modifiers() const
{
    auto flags = ModifierFlags::none;
    for (auto const& bits : modifierBits) {
        if (carbonModifiers & bits.carbon)
            flags = flags | bits.flag;
    }
    return flags;
}

QString Shortcut::encoded() const
{
    return QStringLiteral("{\"carbonKeyCode\":%1,\"carbonModifiers\":%2}").arg(carbonKeyCode).arg(carbonModifiers);
}

std::optional<Shortcut> Shortcut::decode(QString const& text)
{
    constexpr auto throwing = false;
    auto const json = nlohmann::json::parse(text.toStdString(), nullptr, throwing);
    if (!json.is_object())
        return std::nullopt;
    auto const keyCode = integer(json, "carbonKeyCode");
    auto const modifiers = integer(json, "carbonModifiers");
    if (!keyCode || !modifiers)
        return std::nullopt;
    return Shortcut { *keyCode, *modifiers };
}

}
