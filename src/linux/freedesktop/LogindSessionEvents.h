#pragma once

#include "platform/Observers.h"
#include "platform/SessionEvents.h"

#include <QDBusConnection>
#include <QDBusUnixFileDescriptor>
#include <QObject>
#include <QStringList>
#include <QVariant>

namespace Quillory {

// Sleep and the session as logind's signals on the system bus tell of them. Asks nothing that it would wait for; without
// the bus or without logind nothing is ever called.
class LogindSessionEvents final : public QObject, public SessionEvents {
    Q_OBJECT
public:
    explicit LogindSessionEvents(QDBusConnection systemBus);

    Registration observeWillSleep(Action action) override;
    Registration observeDidWake(Action action) override;
    Registration observeSessionDidResignActive(Action action) override;

private Q_SLOTS:
    void prepareForSleep(bool isAboutToSleep);
    void lock();
    void propertiesChanged(QString const& interface, QVariantMap const& changed, QStringList const& invalidated);

private:
    void holdSleepUp();
    void findSession();
    void listenToSession(QString const& path);

    QDBusConnection m_bus;
    Observers<void()> m_willSleep;
    Observers<void()> m_didWake;
    Observers<void()> m_didResignActive;
    // While it is open the system waits with going to sleep, a few seconds at most.
    QDBusUnixFileDescriptor m_sleepDelay;
    bool m_isAsleep = false;
};

}
