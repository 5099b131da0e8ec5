#include "linux/freedesktop/PortalRequest.h"

#include "platform/SystemError.h"

#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusUnixFileDescriptor>
#include <QFile>
#include <QRandomGenerator>

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

QString const startsWithSession = QStringLiteral("autostart");

QVariantMap options(QString const& token)
{
    return { { QStringLiteral("handle_token"), token } };
}

QString newToken()
{
    return QStringLiteral("quillory%1").arg(QRandomGenerator::global()->generate64());
}

}

PortalRequest::PortalRequest(QDBusConnection bus, QObject* parent, Answered answered)
    : QObject(parent)
    , m_bus(std::move(bus))
    , m_answered(std::move(answered))
{
}

void PortalRequest::start(QDBusConnection const& bus, Subject const& subject, QObject* parent, Answered answered)
{
    auto* const request = new PortalRequest(bus, parent, std::move(answered));
    auto const token = newToken();
    request->listen(expectedPath(bus, token));
    std::visit([&](auto const& each) { request->send(each, token); }, subject);
}

void PortalRequest::listen(QString const& path)
{
    // By the path alone, which holds a token of ours: a portal that the call itself starts has no owner of its name yet.
    auto const interface = QStringLiteral("org.freedesktop.portal.Request");
    auto const signal = QStringLiteral("Response");
    if (!m_path.isEmpty())
        m_bus.disconnect(QString(), m_path, interface, signal, this, SLOT(respond(uint, QVariantMap)));
    m_path = path;
    m_bus.connect(QString(), m_path, interface, signal, this, SLOT(respond(uint, QVariantMap)));
}

void PortalRequest::send(File const& file, QString const& token)
{
    auto const descriptor = open(QFile::encodeName(file.path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0)
        return finish({ Answer::Outcome::failed, SystemError::last().localizedDescription() });
    QDBusUnixFileDescriptor const handle(descriptor);
    close(descriptor); // the message has its own
    call("OpenURI", QStringLiteral("OpenFile"), { QString(), QVariant::fromValue(handle), options(token) });
}

void PortalRequest::send(Link const& link, QString const& token)
{
    call("OpenURI", QStringLiteral("OpenURI"), { QString(), link.address, options(token) });
}

void PortalRequest::send(Background const& background, QString const& token)
{
    auto wishes = options(token);
    wishes.insert(startsWithSession, background.startsWithSession);
    wishes.insert(
        QStringLiteral("commandline"), QStringList { QStringLiteral("quillory"), QStringLiteral("--background") });
    call("Background", QStringLiteral("RequestBackground"), { QString(), wishes });
}

void PortalRequest::call(char const* interface, QString const& method, QVariantList const& arguments)
{
    auto message = QDBusMessage::createMethodCall(portalName(), QStringLiteral("/org/freedesktop/portal/desktop"),
        QStringLiteral("org.freedesktop.portal.") + QLatin1StringView(interface), method);
    message.setArguments(arguments);
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
    finish({ outcome, tr("The desktop could not open it."), results.value(startsWithSession).toBool() });
}

void PortalRequest::finish(Answer const& answer)
{
    deleteLater();
    if (auto answered = std::exchange(m_answered, nullptr))
        answered(answer);
}

}
