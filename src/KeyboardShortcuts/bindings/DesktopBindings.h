#pragma once

#include "KeyboardShortcuts/Shortcut.h"

#include <QCoreApplication>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <expected>
#include <functional>
#include <optional>

namespace Quillory {

struct BindingDialect;

// What makes a desktop start this program by keys: lines of its configuration, or commands for a shell, with comments.
class DesktopBindings {
    Q_DECLARE_TR_FUNCTIONS(DesktopBindings)
public:
    // Absent are shortcuts that the user has not stored: the usual ones take their place.
    struct Keys {
        std::optional<Shortcut> toggle;
        std::optional<Shortcut> peek;
    };

    // `symbolName` gives X11's name for what the key with a virtual key code gives by itself. `command` starts the program.
    DesktopBindings(Keys keys, std::function<std::optional<QString>(std::uint16_t)> symbolName, QString command);

    static QStringList desktops();

    // Of one of the desktops. The error is a sentence for the user: it has no name for a key.
    std::expected<QString, QString> textFor(QString const& desktop) const;

private:
    enum class Action { toggle, peek };

    std::expected<QString, QString> binding(BindingDialect const& dialect, Action action) const;
    Shortcut shortcutOf(Action action) const;
    QStringList notes(BindingDialect const& dialect) const;

    Keys m_keys;
    std::function<std::optional<QString>(std::uint16_t)> m_symbolName;
    QString m_command;
};

}
