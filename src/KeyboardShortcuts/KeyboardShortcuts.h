#pragma once

#include "KeyboardShortcuts/Shortcut.h"
#include "KeyboardShortcuts/ShortcutName.h"
#include "platform/HotKeys.h"
#include "platform/UserDefaults.h"

#include <functional>
#include <optional>
#include <vector>

namespace Quillory {

// The stored shortcuts of the program, and a hot key for each that somebody listens to. Main thread only.
class KeyboardShortcuts {
public:
    using Name = ShortcutName;
    using Action = std::function<void()>;

    // Both outlive it.
    KeyboardShortcuts(UserDefaults& defaults, HotKeys& hotKeys);

    // Nothing when the user disabled it, when none was ever set, and for a stored value that can't be read.
    std::optional<Shortcut> getShortcut(Name const& name) const;

    // Runs `action` whenever the name's shortcut goes down, or is let go; several of one phase in order of arrival.
    // A shortcut that the system refuses gets no hot key, and nobody is told.
    void onKeyDown(Name const& name, Action action);
    void onKeyUp(Name const& name, Action action);

private:
    struct Listener {
        Name name;
        HotKeys::Phase phase;
        Action action;
    };
    struct HotKey {
        Shortcut shortcut;
        Registration registration;
    };

    void listen(Name const& name, HotKeys::Phase phase, Action action);
    void storeInitialShortcut(Name const& name);
    void registerShortcut(Name const& name);
    void dispatch(Shortcut const& shortcut, HotKeys::Phase phase) const;

    UserDefaults& m_defaults;
    HotKeys& m_hotKeys;
    std::vector<Listener> m_listeners;
    std::vector<HotKey> m_registered;
};

}
