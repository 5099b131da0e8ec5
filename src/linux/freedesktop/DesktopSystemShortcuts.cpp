#include "linux/freedesktop/DesktopSystemShortcuts.h"

#include "linux/freedesktop/DesktopShortcutFormats.h"

#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>

#include <chrono>

namespace Quillory {

namespace {

constexpr std::chrono::milliseconds patience { 2000 };

// The output of the tool; empty when it is missing, fails or does not end.
QString settings(QStringList const& arguments)
{
    QProcess tool;
    tool.setStandardErrorFile(QProcess::nullDevice());
    tool.start(QStringLiteral("gsettings"), arguments);
    bool const isDone = tool.waitForFinished(static_cast<int>(patience.count()));
    return isDone && tool.exitCode() == 0 ? QString::fromUtf8(tool.readAllStandardOutput()) : QString();
}

// Shortcuts that the user added stand each in a place of its own.
QString customShortcuts()
{
    static QString const schema = QStringLiteral("org.gnome.settings-daemon.plugins.media-keys");
    static QRegularExpression const path(QStringLiteral("'(/[^']+)'"));
    QString all;
    auto const places = settings({ QStringLiteral("get"), schema, QStringLiteral("custom-keybindings") });
    for (auto found = path.globalMatch(places); found.hasNext();) {
        auto const place = schema + QStringLiteral(".custom-keybinding:") + found.next().captured(1);
        all += settings({ QStringLiteral("get"), place, QStringLiteral("binding") });
    }
    return all;
}

QString keyBindings()
{
    QString all = customShortcuts();
    for (auto const& schema :
        { QStringLiteral("org.gnome.desktop.wm.keybindings"), QStringLiteral("org.gnome.mutter.keybindings"),
            QStringLiteral("org.gnome.mutter.wayland.keybindings"), QStringLiteral("org.gnome.shell.keybindings"),
            QStringLiteral("org.gnome.settings-daemon.plugins.media-keys") })
        all += settings({ QStringLiteral("list-recursively"), schema });
    return all;
}

QByteArray configuration(QString const& name)
{
    QFile file(QStandardPaths::locate(QStandardPaths::GenericConfigLocation, name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

}

DesktopSystemShortcuts::DesktopSystemShortcuts(KeyboardLayout const& layout)
    : m_layout(layout)
{
}

std::vector<SymbolicHotKey> DesktopSystemShortcuts::symbolicHotKeys() const
{
    using namespace DesktopShortcutFormats;
    auto const desktops = qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(QLatin1Char(':'));
    for (auto const& desktop : desktops) {
        if (desktop == QLatin1StringView("GNOME") || desktop == QLatin1StringView("Unity"))
            return fromSettingsListing(keyBindings(), m_layout);
        if (desktop == QLatin1StringView("KDE"))
            return fromGlobalShortcuts(
                QString::fromUtf8(configuration(QStringLiteral("kglobalshortcutsrc"))), m_layout);
        if (desktop == QLatin1StringView("XFCE"))
            return fromKeyboardChannel(
                configuration(QStringLiteral("xfce4/xfconf/xfce-perchannel-xml/xfce4-keyboard-shortcuts.xml")),
                m_layout);
    }
    return {};
}

}
