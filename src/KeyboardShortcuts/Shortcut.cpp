#include "KeyboardShortcuts/Shortcut.h"

#include "KeyboardShortcuts/SpecialKey.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>

namespace Quillory {

namespace {

struct ModifierBits {
    std::int64_t carbon;
    ModifierFlags flag;
    QStringView symbol;
};

// In the order in which they are shown.
constexpr auto modifierBits = std::to_array<ModifierBits>({
    { 0x1000, ModifierFlags::control, u"⌃" },
    { 0x800, ModifierFlags::option, u"⌥" },
    { 0x200, ModifierFlags::shift, u"⇧" },
    { 0x100, ModifierFlags::command, u"⌘" },
    { 0x20000, ModifierFlags::function, u"\U0001f310\ufe0e" },
});

// The first letter of the text in title case, the rest lower: "ß" becomes "Ss".
QString capitalized(QString const& text)
{
    auto const characters = text.toStdU32String();
    if (characters.empty())
        return text;
    auto const titled = QChar::toTitleCase(characters.front());
    if (titled != characters.front())
        return QString::fromUcs4(&titled, 1) + QString::fromStdU32String(characters.substr(1)).toLower();
    auto const upper = text.toUpper();
    return upper.left(1) + upper.mid(1).toLower();
}

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

ModifierFlags Shortcut::comparableModifiers() const
{
    auto const flags = modifiers();
    if (!SpecialKeys::isInFunctionKeySet(carbonKeyCode))
        return flags;
    return static_cast<ModifierFlags>(std::uint32_t(flags) & ~std::uint32_t(ModifierFlags::function));
}

std::optional<KeyCombination> Shortcut::combination() const
{
    if (!std::in_range<std::uint16_t>(carbonKeyCode) || !std::in_range<std::uint32_t>(carbonModifiers))
        return std::nullopt;
    return KeyCombination { static_cast<std::uint16_t>(carbonKeyCode), comparableModifiers() };
}

QString Shortcut::description(KeyboardLayout const& layout) const
{
    QString shown;
    for (auto const& bits : modifierBits) {
        if (contains(modifiers(), bits.flag))
            shown += bits.symbol;
    }
    if (auto const key = SpecialKeys::withCode(carbonKeyCode))
        return shown + SpecialKeys::text(*key);
    auto const character = std::in_range<std::uint16_t>(carbonKeyCode)
        ? layout.character(static_cast<std::uint16_t>(carbonKeyCode))
        : std::nullopt;
    return shown + (character ? capitalized(*character) : QString(QChar::ReplacementCharacter));
}

bool Shortcut::isNeverTaken() const
{
    constexpr std::int64_t f12 = 111;
    return carbonKeyCode == f12 && modifiers() == ModifierFlags::none;
}

bool Shortcut::isTakenBySystem(std::vector<SymbolicHotKey> const& symbolicHotKeys) const
{
    if (isNeverTaken())
        return false;
    return std::ranges::any_of(symbolicHotKeys, [&](SymbolicHotKey const& each) {
        Shortcut const raw { each.keyCode, carbonModifiersOf(each.modifiers) };
        return each.isEnabled && Shortcut { each.keyCode, carbonModifiersOf(raw.comparableModifiers()) } == *this;
    });
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
