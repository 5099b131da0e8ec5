#pragma once

#include "platform/ApplicationInstance.h"
#include "platform/linux/freedesktop/ApplicationInterface.h"

#include <QDBusConnection>

#include <functional>
#include <vector>

namespace Quillory {

// The session's one process is the one that owns the program's name on the session bus.
class BusApplicationInstance final : public ApplicationInstance {
public:
    static QString name() { return QStringLiteral("org.quillory.Quillory"); }

    // The id by which the desktop knows this start, to be read before the toolkit takes it out of the environment.
    static QString startupId();

    BusApplicationInstance(QDBusConnection const& sessionBus, QString startupId);
    ~BusApplicationInstance() override;
    BusApplicationInstance(BusApplicationInstance const&) = delete;
    BusApplicationInstance& operator=(BusApplicationInstance const&) = delete;

    // Waits for the bus, and for the other process at most five seconds.
    Role start(Wish wish) override;

    Registration observeRequests(std::function<void(Request const&)> requested) override;

private:
    enum class Claim { owned, ownedByAnother, failed };

    Claim claim();
    bool handOver(Wish wish);
    void receive(Request const& request);

    QDBusConnection m_bus;
    QString m_startupId;
    ApplicationInterface m_interface;
    std::function<void(Request const&)> m_requested;
    std::vector<Request> m_kept;
};

}
