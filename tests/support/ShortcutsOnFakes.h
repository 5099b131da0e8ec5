#pragma once

#include "KeyboardShortcuts/KeyboardShortcuts.h"
#include "support/FakeLocalKeyEvents.h"

namespace Quillory {

// The whole line from the preferences to the hot keys, over a keyboard and preferences of the test.
struct ShortcutsOnFakes {
    ShortcutsOnFakes(UserDefaults& defaults, HotKeys& hotKeys, Executor& executor)
        : storage(defaults, notifications)
        , center(hotKeys, localKeyEvents, notifications)
        , shortcuts(storage, center, executor)
    {
    }

    NotificationCenter notifications;
    FakeLocalKeyEvents localKeyEvents;
    ShortcutStorage storage;
    HotKeyCenter center;
    KeyboardShortcuts shortcuts;
};

}
