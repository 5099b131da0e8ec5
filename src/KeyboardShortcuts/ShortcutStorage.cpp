#include "KeyboardShortcuts/ShortcutStorage.h"

namespace Quillory {

ShortcutStorage::ShortcutStorage(UserDefaults& defaults, NotificationCenter& notifications)
    : m_defaults(defaults)
    , m_notifications(notifications)
{
}

std::optional<Shortcut> ShortcutStorage::getShortcut(ShortcutName const& name) const
{
    auto known = m_shortcuts.find(name.rawValue);
    if (known == m_shortcuts.end())
        known = m_shortcuts.emplace(name.rawValue, read(name)).first;
    return known->second;
}

std::optional<Shortcut> ShortcutStorage::read(ShortcutName const& name) const
{
    auto const stored = m_defaults.get<QString>(name.defaultsKey());
    return stored ? Shortcut::decode(*stored) : std::nullopt;
}

void ShortcutStorage::setShortcut(std::optional<Shortcut> const& shortcut, ShortcutName const& name)
{
    m_listeners.tell(Change::coming, name);
    m_defaults.setValue(
        name.defaultsKey(), shortcut ? UserDefaults::Value(shortcut->encoded()) : UserDefaults::Value(false));
    m_shortcuts[name.rawValue] = shortcut;
    m_listeners.tell(Change::made, name);
    m_notifications.post({ shortcutByNameDidChange(), { { QStringLiteral("name"), name } } });
}

void ShortcutStorage::storeInitialShortcut(ShortcutName const& name)
{
    if (name.initialShortcut && !m_defaults.value(name.defaultsKey()))
        setShortcut(name.initialShortcut, name);
}

}
