#include "KeyboardShortcuts/MenuItem.h"

#include "KeyboardShortcuts/SpecialKey.h"

#include <utility>

namespace Quillory {

namespace {

QString keyEquivalentOf(Shortcut const& shortcut, KeyboardLayout const& layout)
{
    if (auto const key = SpecialKeys::withCode(shortcut.carbonKeyCode))
        return SpecialKeys::keyEquivalent(*key);
    if (!std::in_range<std::uint16_t>(shortcut.carbonKeyCode))
        return {};
    return layout.character(static_cast<std::uint16_t>(shortcut.carbonKeyCode)).value_or(QString());
}

bool matches(MenuItem const& item, QString const& keyEquivalent, ModifierFlags modifiers)
{
    auto itemsKey = item.keyEquivalent;
    auto itemsModifiers = item.keyEquivalentModifierMask;
    if (contains(modifiers, ModifierFlags::shift) && itemsKey.toLower() != itemsKey) {
        itemsKey = itemsKey.toLower();
        itemsModifiers = itemsModifiers | ModifierFlags::shift;
    }
    return itemsKey == keyEquivalent && itemsModifiers == modifiers;
}

MenuItem const* find(std::vector<MenuItem> const& items, QString const& keyEquivalent, ModifierFlags modifiers)
{
    for (auto const& item : items) {
        if (matches(item, keyEquivalent, modifiers))
            return &item;
        if (auto const* below = find(item.submenu, keyEquivalent, modifiers))
            return below;
    }
    return nullptr;
}

}

MenuItem const* MenuItem::takenBy(
    Shortcut const& shortcut, std::vector<MenuItem> const& items, KeyboardLayout const& layout)
{
    auto const keyEquivalent = keyEquivalentOf(shortcut, layout);
    return keyEquivalent.isEmpty() ? nullptr : find(items, keyEquivalent, shortcut.modifiers());
}

}
