#pragma once

#include "KeyboardShortcuts/Shortcut.h"
#include "KeyboardShortcuts/ShortcutName.h"
#include "platform/NotificationCenter.h"
#include "platform/Observers.h"
#include "platform/UserDefaults.h"

#include <functional>
#include <map>
#include <optional>
#include <utility>

namespace Quillory {

// The shortcuts as the user's preferences keep them: the text of a shortcut, false for one that the user took away,
// or nothing. Each is read once, when it is first asked for, and follows what is set here. Main thread only.
class ShortcutStorage {
public:
    // Told right before and right after a stored value is written.
    enum class Change { coming, made };
    using Listener = std::function<void(Change, ShortcutName const&)>;

    // Posted after each change and what the listeners made of it; "name" in its user info holds the ShortcutName.
    static QString shortcutByNameDidChange() { return QStringLiteral("KeyboardShortcuts_shortcutByNameDidChange"); }

    // Both outlive it.
    ShortcutStorage(UserDefaults& defaults, NotificationCenter& notifications);

    // Nothing when the user took it away, when none was ever set, and for a stored value that can't be read.
    std::optional<Shortcut> getShortcut(ShortcutName const& name) const;

    // Nothing takes it away, so that an initial shortcut does not come back.
    void setShortcut(std::optional<Shortcut> const& shortcut, ShortcutName const& name);

    // Only where nothing was ever stored.
    void storeInitialShortcut(ShortcutName const& name);

    Registration listen(Listener listener) { return m_listeners.add(std::move(listener)); }

private:
    std::optional<Shortcut> read(ShortcutName const& name) const;

    UserDefaults& m_defaults;
    NotificationCenter& m_notifications;
    mutable std::map<QString, std::optional<Shortcut>> m_shortcuts; // by raw value
    Observers<void(Change, ShortcutName const&)> m_listeners;
};

}
