#pragma once

#include "linux/freedesktop/ApplicationInterface.h"
#include "platform/ApplicationInstance.h"
#include "platform/Observers.h"

#include <QDBusConnection>

#include <chrono>
#include <functional>
#include <vector>

namespace Quillory {

// The session's one process is the one that owns the program's name on the session bus.
class BusApplicationInstance final : public ApplicationInstance {
public:
    static QString name() { return QStringLiteral("org.quillory.Quillory"); }

    // Who started this process, and the desktop's id of that start.
    struct Start {
        enum class By { user, bus };
        QString id;
        By by = By::user;

        // To be read before the toolkit takes the id out of the environment.
        static Start ofThisProcess();
    };

    static constexpr std::chrono::milliseconds usualAnswerTime { 5000 };

    // A process that the bus began for the sake of a toggle opens. `answerTime` is what another process has for its answer.
    BusApplicationInstance(
        QDBusConnection sessionBus, Start start, std::chrono::milliseconds answerTime = usualAnswerTime);
    ~BusApplicationInstance() override;
    BusApplicationInstance(BusApplicationInstance const&) = delete;
    BusApplicationInstance& operator=(BusApplicationInstance const&) = delete;

    // Waits for the bus, and for the answer of another process. It never serves beside one that owns the name: two
    // would write the same settings.
    Role start(Request request, Answer answered) override;

    Registration observeRequests(std::function<void(Request const&, Answer const&)> requested) override;

    // Gives the name back, so that the next process to start is the first. The end of this object does it too.
    void leave();

private:
    enum class Claim { owned, ownedByAnother, failed };
    enum class Reply { taken, none, ownerGone };
    struct Kept {
        Request request;
        Answer answer;
    };

    Claim claim();
    Reply handOver(Request const& request, Answer const& answered);
    void askItself(Request request, Answer const& answered);
    void receive(Request request, Answer const& answer);

    QDBusConnection m_bus;
    Start m_start;
    std::chrono::milliseconds m_answerTime;
    ApplicationInterface m_interface;
    Observers<void(Request const&, Answer const&)> m_requested;
    std::vector<Kept> m_kept;
};

}
