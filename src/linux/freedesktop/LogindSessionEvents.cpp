#include "linux/freedesktop/LogindSessionEvents.h"

#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

#include <utility>

namespace Quillory {

namespace {

QString const service = QStringLiteral("org.freedesktop.login1");
QString const managerPath = QStringLiteral("/org/freedesktop/login1");
QString const managerInterface = QStringLiteral("org.freedesktop.login1.Manager");
QString const sessionInterface = QStringLiteral("org.freedesktop.login1.Session");

template<typename Value, typename Done>
void whenAnswered(QObject* owner, QDBusPendingCall const& call, Done done)
{
    auto* const watcher = new QDBusPendingCallWatcher(call, owner);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, owner, [watcher, done = std::move(done)] {
        QDBusPendingReply<Value> const reply = *watcher;
        watcher->deleteLater();
        if (!reply.isError())
            done(reply.value());
    });
}

}

LogindSessionEvents::LogindSessionEvents(QDBusConnection systemBus)
    : m_bus(std::move(systemBus))
{
    if (!m_bus.isConnected())
        return;
    m_bus.connect(
        service, managerPath, managerInterface, QStringLiteral("PrepareForSleep"), this, SLOT(prepareForSleep(bool)));
    holdSleepUp();
    findSession();
}

Registration LogindSessionEvents::observeWillSleep(Action action)
{
    return m_willSleep.add(std::move(action));
}

Registration LogindSessionEvents::observeDidWake(Action action)
{
    return m_didWake.add(std::move(action));
}

Registration LogindSessionEvents::observeSessionDidResignActive(Action action)
{
    return m_didResignActive.add(std::move(action));
}

void LogindSessionEvents::holdSleepUp()
{
    auto call = QDBusMessage::createMethodCall(service, managerPath, managerInterface, QStringLiteral("Inhibit"));
    call << QStringLiteral("sleep") << QStringLiteral("Quillory") << tr("The reader gives the keyboard back first.")
         << QStringLiteral("delay");
    whenAnswered<QDBusUnixFileDescriptor>(this, m_bus.asyncCall(call), [this](QDBusUnixFileDescriptor const& delay) {
        // An answer that comes when the next sleep has begun would hold that up for nothing.
        if (!m_isAsleep)
            m_sleepDelay = delay;
    });
}

// The environment names it where the session started the program; a program that the bus started stands in none, and
// means the user's display.
void LogindSessionEvents::findSession()
{
    auto call = QDBusMessage::createMethodCall(service, managerPath, managerInterface, QStringLiteral("GetSession"));
    call << qEnvironmentVariable("XDG_SESSION_ID", QStringLiteral("auto"));
    whenAnswered<QDBusObjectPath>(
        this, m_bus.asyncCall(call), [this](QDBusObjectPath const& session) { listenToSession(session.path()); });
}

void LogindSessionEvents::listenToSession(QString const& path)
{
    m_bus.connect(service, path, sessionInterface, QStringLiteral("Lock"), this, SLOT(lock()));
    m_bus.connect(service, path, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("PropertiesChanged"),
        this, SLOT(propertiesChanged(QString, QVariantMap, QStringList)));
}

void LogindSessionEvents::prepareForSleep(bool isAboutToSleep)
{
    m_isAsleep = isAboutToSleep;
    (isAboutToSleep ? m_willSleep : m_didWake).tell();
    if (isAboutToSleep)
        m_sleepDelay = {};
    else if (!m_sleepDelay.isValid())
        holdSleepUp();
}

void LogindSessionEvents::lock()
{
    m_didResignActive.tell();
}

void LogindSessionEvents::propertiesChanged(QString const& interface, QVariantMap const& changed, QStringList const&)
{
    if (interface != sessionInterface)
        return;
    // A desktop that locks the screen by itself says so in the hint alone.
    bool const isAway = !changed.value(QStringLiteral("Active"), true).toBool()
        || changed.value(QStringLiteral("LockedHint"), false).toBool();
    if (isAway)
        m_didResignActive.tell();
}

}
