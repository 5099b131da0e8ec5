#include "KeyboardShortcuts/KeyboardShortcuts.h"

#include <algorithm>
#include <utility>

namespace Quillory {

KeyboardShortcuts::KeyboardShortcuts(UserDefaults& defaults, HotKeys& hotKeys)
    : m_defaults(defaults)
    , m_hotKeys(hotKeys)
{
}

std::optional<Shortcut> KeyboardShortcuts::getShortcut(Name const& name) const
{
    auto const stored = m_defaults.get<QString>(name.defaultsKey());
    return stored ? Shortcut::decode(*stored) : std::nullopt;
}

void KeyboardShortcuts::onKeyDown(Name const& name, Action action)
{
    listen(name, HotKeys::Phase::pressed, std::move(action));
}

void KeyboardShortcuts::onKeyUp(Name const& name, Action action)
{
    listen(name, HotKeys::Phase::released, std::move(action));
}

void KeyboardShortcuts::listen(Name const& name, HotKeys::Phase phase, Action action)
{
    storeInitialShortcut(name);
    m_listeners.push_back({ name, phase, std::move(action) });
    registerShortcut(name);
}

// Only where nothing is stored: a shortcut that the user disabled stays disabled.
void KeyboardShortcuts::storeInitialShortcut(Name const& name)
{
    if (name.initialShortcut && !m_defaults.value(name.defaultsKey()))
        m_defaults.setValue(name.defaultsKey(), name.initialShortcut->encoded());
}

void KeyboardShortcuts::registerShortcut(Name const& name)
{
    auto const shortcut = getShortcut(name);
    if (!shortcut || std::ranges::find(m_registered, *shortcut, &HotKey::shortcut) != m_registered.end())
        return;
    if (!std::in_range<std::uint16_t>(shortcut->carbonKeyCode))
        return;
    auto registration = m_hotKeys.registerHotKey(static_cast<std::uint16_t>(shortcut->carbonKeyCode),
        shortcut->modifiers(), [this, shortcut = *shortcut](HotKeys::Phase phase) { dispatch(shortcut, phase); });
    if (registration)
        m_registered.push_back({ *shortcut, std::move(*registration) });
}

void KeyboardShortcuts::dispatch(Shortcut const& shortcut, HotKeys::Phase phase) const
{
    // An action may add listeners.
    auto const listeners = m_listeners;
    for (auto const& listener : listeners) {
        if (listener.phase == phase && getShortcut(listener.name) == shortcut)
            listener.action();
    }
}

}
