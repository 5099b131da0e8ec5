#include "linux/freedesktop/AutostartEntry.h"

#include "linux/freedesktop/DesktopEntry.h"

#include <QDir>
#include <QFile>
#include <QSaveFile>
#include <QStandardPaths>

#include <algorithm>
#include <utility>

namespace Quillory {

namespace {

QString const fileName = QStringLiteral("/org.quillory.Quillory.desktop");

// As an argument of an Exec line: first quoted as the line wants it, then escaped as every text of the file.
QString quoted(QString const& path)
{
    QString result(u'"');
    for (auto const character : path) {
        if (QStringView(u"\"`$\\").contains(character))
            result += QStringLiteral("\\\\");
        result += character;
        if (character == u'%' || character == u'\\') // the one begins a code, the other an escape
            result += character;
    }
    return result + u'"';
}

bool isStarted(QByteArray const& contents)
{
    auto const values = DesktopEntry::mainGroup(contents);
    auto const program = values.value(QStringLiteral("TryExec"));
    return !values.value(QStringLiteral("Exec")).isEmpty() && values.value(QStringLiteral("Hidden")) != u"true"
        && values.value(QStringLiteral("X-GNOME-Autostart-enabled")) != u"false"
        && (program.isEmpty() || !QStandardPaths::findExecutable(program).isEmpty());
}

}

AutostartEntry::Folders AutostartEntry::Folders::standard()
{
    auto folders = QStandardPaths::standardLocations(QStandardPaths::GenericConfigLocation);
    for (auto& folder : folders)
        folder += QStringLiteral("/autostart");
    auto own = folders.takeFirst();
    return { std::move(own), std::move(folders) };
}

AutostartEntry::Folders AutostartEntry::Folders::ofHost()
{
    return { QDir::homePath() + QStringLiteral("/.config/autostart"), {} };
}

AutostartEntry::AutostartEntry(Folders folders, QString program)
    : m_folders(std::move(folders))
    , m_program(std::move(program))
{
}

Autostart::State AutostartEntry::state() const
{
    for (auto const& folder : QStringList(m_folders.own) + m_folders.shared) {
        if (QFile file(folder + fileName); file.open(QIODevice::ReadOnly))
            return isStarted(file.readAll()) ? State::on : State::off;
    }
    return State::off;
}

void AutostartEntry::ask(State wanted, Answered answered)
{
    answered(state() == wanted ? std::expected<void, QString>() : make(wanted));
}

std::expected<void, QString> AutostartEntry::make(State wanted) const
{
    auto const path = m_folders.own + fileName;
    if (wanted == State::off && !isShared()) {
        QFile file(path);
        return file.remove() ? std::expected<void, QString>() : std::unexpected(file.errorString());
    }
    QDir().mkpath(m_folders.own);
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly) && file.write(contents(wanted)) >= 0 && file.commit())
        return {};
    return std::unexpected(file.errorString());
}

// Off hides the system's entry, which is not the user's to remove.
QByteArray AutostartEntry::contents(State state) const
{
    auto text = QStringLiteral("[Desktop Entry]\nType=Application\nName=Quillory\nIcon=org.quillory.Quillory\n"
                               "Exec=%1 --background\nTryExec=%2\n")
                    .arg(quoted(m_program), QString(m_program).replace(u'\\', QStringLiteral("\\\\")));
    if (state == State::off)
        text += QStringLiteral("Hidden=true\n");
    return text.toUtf8();
}

bool AutostartEntry::isShared() const
{
    return std::ranges::any_of(
        m_folders.shared, [](QString const& folder) { return QFile::exists(folder + fileName); });
}

}
