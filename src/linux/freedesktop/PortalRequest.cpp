#include "linux/freedesktop/PortalRequest.h"

#include "platform/SystemError.h"

#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusUnixFileDescriptor>
#include <QFile>
#include <QRandomGenerator>
#include <QUrl>

#include <expected>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace Quillory {

namespace {

QString portalName()
{
    return QStringLiteral("org.freedesktop.portal.Desktop");
}

// The path that the request will have, so that its answer is listened for before it can come.
QString expectedPath(QDBusConnection const& bus, QString const& token)
{
    auto sender = bus.baseService().mid(1);
    sender.replace(u'.', u'_');
    return QStringLiteral("/org/freedesktop/portal/desktop/request/%1/%2").arg(sender, token);
}

QString requestInterface()
{
    return QStringLiteral("org.freedesktop.portal.Request");
}

constexpr QLatin1StringView openUri { "OpenURI" };
QString const startsWithSession = QStringLiteral("autostart");

QString newToken()
{
    return QStringLiteral("quillory%1").arg(QRandomGenerator::global()->generate64());
}

// What is handed over by a descriptor. Nothing is written to it; but an application may write only if we could, and the
// portal refuses a descriptor that allows more than is asked for.
struct OpenedFile {
    QDBusUnixFileDescriptor descriptor;
    bool isWritable = false;
};

std::expected<OpenedFile, SystemError> openedFile(PortalRequest::File const& file)
{
    auto const name = QFile::encodeName(file.path);
    constexpr int flags = O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
    bool const isForApplication = file.with != PortalRequest::File::With::fileManager;
    auto number = isForApplication ? open(name.constData(), O_RDWR | flags) : -1;
    bool const isWritable = number >= 0;
    if (!isWritable)
        number = open(name.constData(), O_RDONLY | flags);
    if (number < 0)
        return std::unexpected(SystemError::last());
    OpenedFile opened { QDBusUnixFileDescriptor(number), isWritable };
    close(number); // the message has its own
    return opened;
}

QString pathOfFirst(QStringList const& addresses)
{
    return addresses.isEmpty() ? QString() : QUrl(addresses.first()).toLocalFile();
}

}

PortalRequest::PortalRequest(QDBusConnection bus, QObject* parent, Answered answered)
    : QObject(parent)
    , m_bus(std::move(bus))
    , m_portal(portalName(), m_bus, QDBusServiceWatcher::WatchForUnregistration)
    , m_answered(std::move(answered))
{
    connect(&m_portal, &QDBusServiceWatcher::serviceUnregistered, this, &PortalRequest::fail);
}

PortalRequest::~PortalRequest()
{
    if (!m_answered)
        return;
    auto message = QDBusMessage::createMethodCall(portalName(), m_path, requestInterface(), QStringLiteral("Close"));
    message.setAutoStartService(false);
    m_bus.send(message);
}

void PortalRequest::start(QDBusConnection const& bus, Subject const& subject, QObject* parent, Answered answered)
{
    auto* const request = new PortalRequest(bus, parent, std::move(answered));
    if (!bus.isConnected())
        return request->fail(); // a call would never come back
    auto const token = newToken();
    request->listen(expectedPath(bus, token));
    std::visit([&](auto const& each) { request->send(each, token); }, subject);
}

void PortalRequest::listen(QString const& path)
{
    // By the path alone, which holds a token of ours: a portal that the call itself starts has no owner of its name yet.
    auto const interface = requestInterface();
    auto const signal = QStringLiteral("Response");
    if (!m_path.isEmpty())
        m_bus.disconnect(QString(), m_path, interface, signal, this, SLOT(respond(uint, QVariantMap)));
    m_path = path;
    m_bus.connect(QString(), m_path, interface, signal, this, SLOT(respond(uint, QVariantMap)));
}

void PortalRequest::send(File const& file, QString const& token)
{
    auto const opened = openedFile(file);
    if (!opened)
        return finish({ Answer::Outcome::failed, opened.error().localizedDescription() });
    QVariantList const arguments { QString(), QVariant::fromValue(opened->descriptor) };
    if (file.with == File::With::fileManager)
        return send({ openUri, QStringLiteral("OpenDirectory"), arguments, {} }, token); // that of the file
    QVariantMap const wishes {
        { QStringLiteral("writable"), opened->isWritable },
        { QStringLiteral("ask"), file.with == File::With::applicationThatUserChooses },
    };
    send({ openUri, QStringLiteral("OpenFile"), arguments, wishes }, token);
}

void PortalRequest::send(Link const& link, QString const& token)
{
    send({ openUri, QStringLiteral("OpenURI"), { QString(), link.address }, {} }, token);
}

void PortalRequest::send(Folder const& folder, QString const& token)
{
    QVariantMap const wishes {
        { QStringLiteral("directory"), true },
        { QStringLiteral("accept_label"), folder.acceptLabel },
    };
    send({ QLatin1StringView("FileChooser"), QStringLiteral("OpenFile"),
             { QStringLiteral("x11:%1").arg(folder.window, 0, 16), folder.title }, wishes },
        token);
}

void PortalRequest::send(Background const& background, QString const& token)
{
    QVariantMap const wishes {
        { startsWithSession, background.startsWithSession },
        { QStringLiteral("commandline"), QStringList { QStringLiteral("quillory"), QStringLiteral("--background") } },
    };
    send({ QLatin1StringView("Background"), QStringLiteral("RequestBackground"), { QString() }, wishes }, token);
}

void PortalRequest::send(Call call, QString const& token)
{
    auto message = QDBusMessage::createMethodCall(portalName(), QStringLiteral("/org/freedesktop/portal/desktop"),
        QStringLiteral("org.freedesktop.portal.") + call.interface, call.method);
    call.options.insert(QStringLiteral("handle_token"), token);
    message.setArguments(call.arguments << call.options);
    auto* const watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(message), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        QDBusPendingReply<QDBusObjectPath> const reply = *watcher;
        if (reply.isError())
            finish({ Answer::Outcome::failed, reply.error().message() });
        else if (reply.value().path() != m_path)
            listen(reply.value().path()); // a portal that names its requests in its own way
    });
}

void PortalRequest::respond(uint response, QVariantMap const& results)
{
    auto const outcome = response == 0 ? Answer::Outcome::done
        : response == 1                ? Answer::Outcome::cancelledByUser
                                       : Answer::Outcome::failed;
    finish({ outcome, tr("The desktop could not do it."), results.value(startsWithSession).toBool(),
        pathOfFirst(results.value(QStringLiteral("uris")).toStringList()), results });
}

void PortalRequest::fail()
{
    finish({ Answer::Outcome::failed, tr("The desktop could not do it.") });
}

void PortalRequest::finish(Answer const& answer)
{
    deleteLater();
    if (auto answered = std::exchange(m_answered, nullptr))
        answered(answer);
}

}
