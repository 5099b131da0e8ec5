#include "linux/freedesktop/DesktopSettingsPrograms.h"

#include "linux/freedesktop/ChildProcess.h"

#include <algorithm>

namespace Quillory {

namespace {

struct Row {
    char const* desktop;
    char const* command; // words without quotes
};

constexpr Row rows[] {
    { "GNOME", "gnome-control-center keyboard" },
    { "Unity", "unity-control-center keyboard" },
    { "Budgie", "budgie-control-center keyboard" },
    { "KDE", "systemsettings kcm_keys" },
    { "KDE", "systemsettings5 kcm_keys" },
    { "XFCE", "xfce4-keyboard-settings" },
    { "MATE", "mate-keybinding-properties" },
    { "X-Cinnamon", "cinnamon-settings keyboard" },
    { "LXQt", "lxqt-config-globalkeyshortcuts" },
};

}

QList<QStringList> DesktopSettingsPrograms::keyboardShortcuts(QString const& desktops)
{
    QList<QStringList> commands;
    for (auto const& desktop : desktops.split(u':', Qt::SkipEmptyParts)) {
        for (auto const& row : rows) {
            if (desktop.compare(QLatin1StringView(row.desktop), Qt::CaseInsensitive) == 0)
                commands.append(QString::fromLatin1(row.command).split(u' '));
        }
    }
    return commands;
}

bool DesktopSettingsPrograms::openKeyboardShortcuts()
{
    auto const start = [](QStringList const& command) {
        return ChildProcess::start(command, {}, [](auto const&) { }).has_value();
    };
    return std::ranges::any_of(keyboardShortcuts(qEnvironmentVariable("XDG_CURRENT_DESKTOP")), start);
}

}
