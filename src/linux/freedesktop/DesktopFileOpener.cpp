#include "linux/freedesktop/DesktopFileOpener.h"

#include "linux/freedesktop/ChildProcess.h"
#include "linux/freedesktop/DesktopEntry.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QStandardPaths>
#include <QUrl>

#include <memory>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>

namespace Quillory {

namespace {

using Result = std::expected<void, FileOpener::Failure>;

Result failure(QString const& description)
{
    return std::unexpected(FileOpener::Failure { description });
}

// The languages of the user as a desktop entry writes them: de_DE before de.
QStringList languages()
{
    QStringList all;
    for (auto const& language : QLocale().uiLanguages()) {
        auto const underscored = QString(language).replace(u'-', u'_');
        all << underscored << underscored.section(u'_', 0, 0);
    }
    return all;
}

// The command of a terminal, up to where the program to run in it follows.
std::optional<QStringList> terminalCommand()
{
    for (auto const& terminal : { QStringList { QStringLiteral("xdg-terminal-exec") },
             QStringList { QStringLiteral("x-terminal-emulator"), QStringLiteral("-e") },
             QStringList { QStringLiteral("xterm"), QStringLiteral("-e") } }) {
        if (!QStandardPaths::findExecutable(terminal.first()).isEmpty())
            return terminal;
    }
    return std::nullopt;
}

QString argumentOf(PortalRequest::Subject const& subject)
{
    auto const* const link = std::get_if<PortalRequest::Link>(&subject);
    return link ? link->address : std::get<PortalRequest::File>(subject).path;
}

std::expected<DesktopEntry, FileOpener::Failure> readEntry(QString const& path)
{
    constexpr qint64 longest = 1'048'576; // bytes; entries with all their translations have some ten thousand
    // Links are followed, since installed entries may be some. A fifo must not block.
    auto const descriptor = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (descriptor < 0)
        return std::unexpected(FileOpener::Failure { SystemError::last().localizedDescription() });
    QFile file;
    file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle);
    struct stat status {};
    bool const isRegular = fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
    auto entry = isRegular && status.st_size <= longest ? DesktopEntry::parse(file.read(longest), path, languages())
                                                        : std::nullopt;
    if (!entry)
        return std::unexpected(FileOpener::Failure { DesktopFileOpener::tr("This is no application.") });
    return *std::move(entry);
}

}

DesktopFileOpener::DesktopFileOpener(QDBusConnection sessionBus, By by)
    : m_bus(std::move(sessionBus))
    , m_by(by)
{
}

void DesktopFileOpener::open(QString const& path, Done done)
{
    openByDesktop(PortalRequest::File { path }, std::move(done));
}

void DesktopFileOpener::openLink(QString const& link, Done done)
{
    openByDesktop(PortalRequest::Link { link }, std::move(done));
}

void DesktopFileOpener::openByDesktop(PortalRequest::Subject const& subject, Done done)
{
    auto const launcher = m_by == By::launcher ? QStandardPaths::findExecutable(QStringLiteral("xdg-open")) : QString();
    if (launcher.isEmpty())
        return openByPortal(subject, std::move(done));
    auto const shared = std::make_shared<Done>(std::move(done));
    auto const ended = m_lifetime.guarded([shared](std::optional<int> status) {
        (*shared)(status == 0 ? Result() : failure(tr("The desktop could not open it.")));
    });
    if (auto const started = ChildProcess::start({ launcher, argumentOf(subject) }, {}, ended); !started)
        (*shared)(failure(started.error().localizedDescription()));
}

void DesktopFileOpener::openByPortal(PortalRequest::Subject const& subject, Done done)
{
    PortalRequest::start(m_bus, subject, this, [done = std::move(done)](PortalRequest::Answer const& answer) mutable {
        // Who closes the question about the application has had an answer.
        done(answer.outcome == PortalRequest::Answer::Outcome::failed ? failure(answer.description) : Result());
    });
}

void DesktopFileOpener::reveal(QString const& path)
{
    if (m_by == By::portal)
        return openByPortal(
            PortalRequest::File { path, PortalRequest::File::With::fileManager }, [](Result const&) { });
    auto call = QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.FileManager1"),
        QStringLiteral("/org/freedesktop/FileManager1"), QStringLiteral("org.freedesktop.FileManager1"),
        QStringLiteral("ShowItems"));
    call << QStringList { QString::fromLatin1(QUrl::fromLocalFile(path).toEncoded()) } << QString();
    auto* const watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, path] {
        watcher->deleteLater();
        if (watcher->isError())
            open(QFileInfo(path).path(), [](Result const&) { });
    });
}

void DesktopFileOpener::openWith(QString const& path, QString const& application, Done done)
{
    if (application.isEmpty())
        return openByPortal(
            PortalRequest::File { path, PortalRequest::File::With::applicationThatUserChooses }, std::move(done));
    auto const entry = readEntry(application);
    if (!entry)
        return done(std::unexpected(entry.error()));
    auto command = entry->commandFor(path);
    if (!command)
        return done(failure(tr("Its command line is malformed.")));
    if (entry->wantsTerminal) {
        auto const terminal = terminalCommand();
        if (!terminal)
            return done(failure(tr("There is no terminal to run it in.")));
        command = *terminal + *command;
    }
    auto const started = ChildProcess::start(*command, entry->folder, [](std::optional<int>) { });
    done(started ? Result() : failure(started.error().localizedDescription()));
}

}
