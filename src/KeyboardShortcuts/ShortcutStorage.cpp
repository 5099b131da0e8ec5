#include "KeyboardShortcuts/ShortcutStorage.h"

#include <utility>

namespace Quillory {

ShortcutStorage::ShortcutStorage(UserDefaults& defaults, NotificationCenter& notifications)
    : m_defaults(defaults)
    , m_notifications(notifications)
{
}

std::optional<Shortcut> ShortcutStorage::getShortcut(ShortcutName const& name) const
{
    auto const stored = m_defaults.get<QString>(name.defaultsKey());
    return stored ? Shortcut::decode(*stored) : std::nullopt;
}

void ShortcutStorage::setShortcut(std::optional<Shortcut> const& shortcut, ShortcutName const& name)
{
    auto const listeners = m_listeners;
    for (auto const& listener : listeners)
        listener->willChange(name);
    m_defaults.setValue(
        name.defaultsKey(), shortcut ? UserDefaults::Value(shortcut->encoded()) : UserDefaults::Value(false));
    for (auto const& listener : listeners)
        listener->didChange(name);
    m_notifications.post({ shortcutByNameDidChange(), { { QStringLiteral("name"), name } } });
}

void ShortcutStorage::storeInitialShortcut(ShortcutName const& name)
{
    if (name.initialShortcut && !m_defaults.value(name.defaultsKey()))
        setShortcut(name.initialShortcut, name);
}

Registration ShortcutStorage::listen(Listener listener)
{
    auto shared = std::make_shared<Listener>(std::move(listener));
    m_listeners.push_back(shared);
    return Registration([this, shared] { std::erase(m_listeners, shared); });
}

}
