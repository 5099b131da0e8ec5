#include "KeysForDesktop.h"

#include "ProgramData.h"
#include "StartOptions.h"

#include "KeyboardShortcuts/ShortcutName.h"
#include "KeyboardShortcuts/bindings/DesktopBindings.h"
#include "linux/files/JsonUserDefaults.h"
#include "linux/x11/DefaultKeyMap.h"
#include "linux/x11/XkbKeyboardLayout.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QStandardPaths>

namespace Quillory {

namespace {

// As the file has them now. The settings proper would take a damaged file out of the way, which another process may have.
DesktopBindings::Keys storedKeys()
{
    QFile file(JsonUserDefaults::standardPath());
    auto const settings = file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).object()
                                                         : QJsonObject();
    auto const stored = [&](ShortcutName const& name) {
        return Shortcut::decode(settings[name.defaultsKey()].toString());
    };
    return { stored(ShortcutName::toggleQuillory()), stored(ShortcutName::peekQuillory()) };
}

// By its bare name where a shell finds it so. Absent for a path that would need quotation marks, of which each desktop has
// its own.
std::optional<QString> command()
{
    auto const program = ProgramData::command();
    auto const found = QStandardPaths::findExecutable(QStringLiteral("quillory"));
    if (QFileInfo(found).canonicalFilePath() == QFileInfo(program).canonicalFilePath())
        return QStringLiteral("quillory");
    static QRegularExpression const plain(QStringLiteral("^[A-Za-z0-9/._+-]+$"));
    return plain.match(program).hasMatch() ? std::optional(program) : std::nullopt;
}

}

std::expected<QString, QString> keysForDesktop(QString const& desktop)
{
    auto const called = command();
    if (!called)
        return std::unexpected(StartOptions::tr(
            "Quillory stands in a folder whose name has unusual characters. Make it known as \"quillory\" "
            "by a link in a folder of PATH."));
    auto const text = [&](auto const& keyMap) {
        return DesktopBindings(
            storedKeys(), [&](auto key) { return keyMap.symbolName(key); }, *called)
            .textFor(desktop);
    };
    auto const connection = X11Connection::open();
    return connection ? text(XkbKeyboardLayout(**connection)) : text(DefaultKeyMap());
}

}
