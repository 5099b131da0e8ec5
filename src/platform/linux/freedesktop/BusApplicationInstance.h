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

    // What began this process, and the id by which the desktop knows that.
    struct Start {
        enum class By { user, bus };
        QString id;
        By by = By::user;

        // To be read before the toolkit takes the id out of the environment.
        static Start ofThisProcess();
    };

    // A process that the bus began for the sake of a toggle opens.
    BusApplicationInstance(QDBusConnection const& sessionBus, Start start);
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
    void receive(Request request);

    QDBusConnection m_bus;
    Start m_start;
    ApplicationInterface m_interface;
    std::function<void(Request const&)> m_requested;
    std::vector<Request> m_kept;
};

}
