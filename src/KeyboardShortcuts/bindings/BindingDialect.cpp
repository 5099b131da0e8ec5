#include "KeyboardShortcuts/bindings/BindingDialect.h"

#include <QHash>

#include <algorithm>
#include <array>

namespace Quillory {

namespace {

using Names = std::array<std::pair<ModifierFlags, QLatin1StringView>, 4>;

constexpr Names ofI3 { { { ModifierFlags::command, QLatin1StringView("Mod4") },
    { ModifierFlags::control, QLatin1StringView("Ctrl") }, { ModifierFlags::option, QLatin1StringView("Mod1") },
    { ModifierFlags::shift, QLatin1StringView("Shift") } } };

constexpr Names ofHyprland { { { ModifierFlags::command, QLatin1StringView("SUPER") },
    { ModifierFlags::control, QLatin1StringView("CTRL") }, { ModifierFlags::option, QLatin1StringView("ALT") },
    { ModifierFlags::shift, QLatin1StringView("SHIFT") } } };

constexpr Names ofGtk { { { ModifierFlags::control, QLatin1StringView("<Primary>") },
    { ModifierFlags::shift, QLatin1StringView("<Shift>") }, { ModifierFlags::option, QLatin1StringView("<Alt>") },
    { ModifierFlags::command, QLatin1StringView("<Super>") } } };

constexpr Names ofQt { { { ModifierFlags::command, QLatin1StringView("Meta") },
    { ModifierFlags::control, QLatin1StringView("Ctrl") }, { ModifierFlags::option, QLatin1StringView("Alt") },
    { ModifierFlags::shift, QLatin1StringView("Shift") } } };

constexpr auto swayToggle = "bindsym --no-repeat KEYS exec COMMAND --toggle\n";
constexpr auto swayPeek = "bindsym --no-repeat KEYS exec COMMAND --peek --held HELD\n"
                          "bindsym --release KEYS exec COMMAND --peek-end\n";

// Without its own way to be told of no repetition, a toggle waits for the release.
constexpr auto i3Toggle = "bindsym --release KEYS exec --no-startup-id COMMAND --toggle\n";
constexpr auto i3Peek = "bindsym KEYS exec --no-startup-id COMMAND --peek --held HELD\n"
                        "bindsym --release KEYS exec --no-startup-id COMMAND --peek-end\n";

constexpr auto hyprlandToggle = "bind = KEYS, exec, COMMAND --toggle\n";
constexpr auto hyprlandPeek = "bind = KEYS, exec, COMMAND --peek --held HELD\n"
                              "bindr = KEYS, exec, COMMAND --peek-end\n";

constexpr auto gnomeToggle = R"(schema=org.gnome.settings-daemon.plugins.media-keys
place=/org/gnome/settings-daemon/plugins/media-keys/custom-keybindings/quillory/
all=$(gsettings get $schema custom-keybindings)
case $all in
*"'$place'"*) ;;
*"[]") gsettings set $schema custom-keybindings "['$place']" ;;
*) gsettings set $schema custom-keybindings "${all%]}, '$place']" ;;
esac
gsettings set $schema.custom-keybinding:$place name Quillory
gsettings set $schema.custom-keybinding:$place command 'COMMAND --toggle'
gsettings set $schema.custom-keybinding:$place binding 'KEYS'
)";

constexpr auto kdeToggle
    = R"(kwriteconfig5 --file kglobalshortcutsrc --group org.quillory.Quillory.desktop --key _k_friendly_name Quillory
kwriteconfig5 --file kglobalshortcutsrc --group org.quillory.Quillory.desktop --key toggle 'KEYS,none,Quillory'
)";

constexpr auto xfceToggle = "xfconf-query --channel xfce4-keyboard-shortcuts --property '/commands/custom/KEYS' "
                            "--create --type string "
                            "--set 'COMMAND --toggle'\n";

using KeyNames = BindingDialect::KeyNames;
using KeyRelease = BindingDialect::KeyRelease;
using OwnKeys = BindingDialect::OwnKeys;

constexpr std::array<BindingDialect, 6> dialects { {
    { QLatin1StringView("sway"), ofI3, QLatin1StringView("+"), QLatin1StringView("+"), KeyNames::x11, KeyRelease::told,
        OwnKeys::never, QT_TRANSLATE_NOOP("DesktopBindings", "For ~/.config/sway/config; then run: swaymsg reload"),
        swayToggle, swayPeek },
    { QLatin1StringView("hyprland"), ofHyprland, QLatin1StringView(" "), QLatin1StringView(", "), KeyNames::x11,
        KeyRelease::told, OwnKeys::never,
        QT_TRANSLATE_NOOP("DesktopBindings", "For ~/.config/hypr/hyprland.conf, which is read again when it is saved."),
        hyprlandToggle, hyprlandPeek },
    { QLatin1StringView("i3"), ofI3, QLatin1StringView("+"), QLatin1StringView("+"), KeyNames::x11, KeyRelease::told,
        OwnKeys::onX11, QT_TRANSLATE_NOOP("DesktopBindings", "For ~/.config/i3/config; then run: i3-msg reload"),
        i3Toggle, i3Peek },
    { QLatin1StringView("gnome"), ofGtk, QLatin1StringView(""), QLatin1StringView(""), KeyNames::x11,
        KeyRelease::unknown, OwnKeys::onX11,
        QT_TRANSLATE_NOOP("DesktopBindings", "Run these commands. Keys that are bound already stay."), gnomeToggle },
    { QLatin1StringView("kde"), ofQt, QLatin1StringView("+"), QLatin1StringView("+"), KeyNames::qt, KeyRelease::unknown,
        OwnKeys::onX11,
        QT_TRANSLATE_NOOP("DesktopBindings",
            "Run these commands, with Quillory installed, and log in again. System Settings shows the keys under "
            "Shortcuts."),
        kdeToggle },
    { QLatin1StringView("xfce"), ofGtk, QLatin1StringView(""), QLatin1StringView(""), KeyNames::x11,
        KeyRelease::unknown, OwnKeys::onX11, QT_TRANSLATE_NOOP("DesktopBindings", "Run this command."), xfceToggle },
} };

// Names of its own that Qt has for keys without a character, and characters that X11 names by a word. A comma ends the
// keys in KDE's file.
std::optional<QString> qtName(QString const& symbolName)
{
    static QHash<QString, QString> const names {
        { QStringLiteral("Prior"), QStringLiteral("PgUp") },
        { QStringLiteral("Next"), QStringLiteral("PgDown") },
        { QStringLiteral("Page_Up"), QStringLiteral("PgUp") },
        { QStringLiteral("Page_Down"), QStringLiteral("PgDown") },
        { QStringLiteral("Escape"), QStringLiteral("Esc") },
        { QStringLiteral("Delete"), QStringLiteral("Del") },
        { QStringLiteral("Insert"), QStringLiteral("Ins") },
        { QStringLiteral("BackSpace"), QStringLiteral("Backspace") },
        { QStringLiteral("space"), QStringLiteral("Space") },
        { QStringLiteral("minus"), QStringLiteral("-") },
        { QStringLiteral("equal"), QStringLiteral("=") },
        { QStringLiteral("period"), QStringLiteral(".") },
        { QStringLiteral("slash"), QStringLiteral("/") },
        { QStringLiteral("semicolon"), QStringLiteral(";") },
        { QStringLiteral("apostrophe"), QStringLiteral("'") },
        { QStringLiteral("grave"), QStringLiteral("`") },
    };
    static QStringList const same { QStringLiteral("Return"), QStringLiteral("Tab"), QStringLiteral("Home"),
        QStringLiteral("End"), QStringLiteral("Left"), QStringLiteral("Right"), QStringLiteral("Up"),
        QStringLiteral("Down") };
    if (auto const found = names.constFind(symbolName); found != names.constEnd())
        return *found;
    bool const isLetterOrDigit = symbolName.size() == 1 && symbolName.at(0).isLetterOrNumber();
    bool isNumber = false;
    symbolName.sliced(1).toUInt(&isNumber);
    bool const isFunctionKey = symbolName.startsWith(u'F') && isNumber;
    if (isLetterOrDigit || isFunctionKey || same.contains(symbolName))
        return symbolName.left(1).toUpper() + symbolName.mid(1);
    return std::nullopt;
}

}

BindingDialect const& BindingDialect::of(QStringView desktop)
{
    auto const* const found = std::ranges::find_if(
        dialects, [&](BindingDialect const& dialect) { return dialect.desktop == desktop; });
    return *found;
}

QStringList BindingDialect::desktops()
{
    QStringList names;
    for (auto const& dialect : dialects)
        names << dialect.desktop;
    return names;
}

std::optional<QString> BindingDialect::keys(ModifierFlags flags, QString const& symbolName) const
{
    auto const key = keyNames == KeyNames::qt ? qtName(symbolName) : std::optional(symbolName);
    if (!key || contains(flags, ModifierFlags::function))
        return std::nullopt;
    QStringList names;
    for (auto const& [flag, name] : modifiers) {
        if (contains(flags, flag))
            names << name;
    }
    bool const isSeparated = !names.isEmpty() || separator != joint;
    return names.join(joint) + (isSeparated ? QString(separator) : QString()) + *key;
}

}
