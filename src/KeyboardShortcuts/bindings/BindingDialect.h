#pragma once

#include "platform/ModifierFlags.h"

#include <QString>
#include <QStringList>
#include <QStringView>

#include <optional>
#include <span>
#include <utility>

namespace Quillory {

// How one desktop writes down a key that starts a command.
struct BindingDialect {
    enum class KeyNames { x11, qt };
    enum class KeyRelease { told, unknown };
    // Whether Quillory itself has its keys wherever this desktop runs.
    enum class OwnKeys { never, onX11 };

    QLatin1StringView desktop; // its name, as users ask for it
    std::span<std::pair<ModifierFlags, QLatin1StringView> const> modifiers; // in the order of writing
    QLatin1StringView joint;     // between modifiers
    QLatin1StringView separator; // before the key
    KeyNames keyNames = KeyNames::x11;
    KeyRelease keyRelease = KeyRelease::told;
    OwnKeys ownKeys = OwnKeys::never;
    char const* place = "";  // where the lines belong, to be translated
    char const* toggle = ""; // with KEYS and COMMAND to be replaced
    char const* peek = "";   // with HELD too; empty where a key's release starts nothing

    // Of one of the desktops.
    static BindingDialect const& of(QStringView desktop);
    static QStringList desktops();

    // A key with modifiers, the key by X11's name. Absent where the desktop has no name for it.
    std::optional<QString> keys(ModifierFlags flags, QString const& symbolName) const;
};

}
