#pragma once

#include "KeyboardShortcuts/HotKeyCenter.h"
#include "KeyboardShortcuts/ShortcutStorage.h"
#include "platform/Executor.h"

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace Quillory {

// A hot key for each stored shortcut that somebody listens to; it follows the storage. Main thread only.
class KeyboardShortcuts {
public:
    using Name = ShortcutName;
    using Action = std::function<void()>;

    // All three outlive it.
    KeyboardShortcuts(ShortcutStorage& storage, HotKeyCenter& center, Executor& executor);

    // Stores the name's initial shortcut where nothing was ever stored; the hot key follows in a later turn.
    void define(Name const& name);

    std::optional<Shortcut> getShortcut(Name const& name) const { return m_storage.getShortcut(name); }
    void setShortcut(std::optional<Shortcut> const& shortcut, Name const& name);

    // Runs `action` whenever the name's shortcut goes down, or is let go; several of one phase in order of arrival.
    // A shortcut that the system refuses gets no hot key until `registerWhatIsTaken`.
    void onKeyDown(Name const& name, Action action);
    void onKeyUp(Name const& name, Action action);

    // Tries again what the system refused. Gives those that another program still holds.
    std::vector<Shortcut> registerWhatIsTaken();

    // The held shortcut has done its work: other keys go to the front window from here on.
    void yieldKeyboard() { m_center.yieldKeyboard(); }

private:
    struct Handler {
        Name name;
        HotKeys::Phase phase;
        Action action;
    };
    struct Entry {
        Shortcut shortcut;
        std::shared_ptr<HotKey> hotKey;
    };

    void listen(Name const& name, HotKeys::Phase phase, Action action);
    void noteName(Name const& name);
    void unregisterShortcut(Name const& name);
    void registerShortcut(Name const& name);
    bool isMissing(Name const& name) const;
    void remove(Shortcut const& shortcut);
    void dispatch(Shortcut const& shortcut, HotKeys::Phase phase) const;

    ShortcutStorage& m_storage;
    HotKeyCenter& m_center;
    Executor& m_executor;
    std::vector<Name> m_names;
    std::vector<Handler> m_handlers;
    std::vector<Entry> m_registered;
    Registration m_storageChanges;
    std::vector<Registration> m_definitions;
};

}
