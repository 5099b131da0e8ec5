#pragma once

#include "KeyboardShortcuts/Shortcut.h"

#include <QString>

#include <optional>

namespace Quillory {

// What a shortcut is for. The user assigns the shortcut itself.
struct ShortcutName {
    QString rawValue;
    // What stands for it as long as the user has neither set nor disabled one.
    std::optional<Shortcut> initialShortcut;

    // Shows the reader, or sends it away.
    static ShortcutName toggleQuillory() { return { QStringLiteral("toggleQuillory"), std::nullopt }; }
    // Shows the reader for as long as it is held.
    static ShortcutName peekQuillory() { return { QStringLiteral("peekQuillory"), std::nullopt }; }

    QString defaultsKey() const { return QStringLiteral("KeyboardShortcuts_") + rawValue; }

    bool operator==(ShortcutName const&) const = default;
};

}
