#pragma once

#include "KeyboardShortcuts/Shortcut.h"

#include <QString>

#include <optional>

namespace Quillory {

// Names an action that the user can assign a shortcut to.
struct ShortcutName {
    QString rawValue;
    // Used as long as the user has neither set nor disabled a shortcut.
    std::optional<Shortcut> initialShortcut;

    // Shows the reader, or sends it away.
    static ShortcutName toggleQuillory() { return { QStringLiteral("toggleQuillory"), std::nullopt }; }
    // Shows the reader for as long as it is held.
    static ShortcutName peekQuillory() { return { QStringLiteral("peekQuillory"), std::nullopt }; }

    QString defaultsKey() const { return QStringLiteral("KeyboardShortcuts_") + rawValue; }

    bool operator==(ShortcutName const&) const = default;
};

}
