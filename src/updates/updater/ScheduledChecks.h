#pragma once

#include "platform/Executor.h"
#include "platform/SessionEvents.h"

#include <QDateTime>

#include <chrono>
#include <functional>
#include <optional>

namespace Quillory {

// Says when a check is due: about once a day, across restarts and sleep, and a short while after the start at the
// earliest. One timer waits for the next check. Main thread only.
class ScheduledChecks {
public:
    struct Services {
        Executor& executor;
        SessionEvents& session;
        std::function<QDateTime()> wallClock;
        std::function<std::optional<QDateTime>()> lastAttempt;
    };

    // `due` is called in turns of its own, once for each check. Nothing is waited for yet.
    ScheduledChecks(Services services, std::function<void()> due);

    // The first at the start of the program, the second when the user wants checks.
    void begin();
    void resume();
    void stop();

    // A check has come to its end, by whomever it was asked for.
    void succeeded();
    void failed();

    // A check that was due can't be made now: in a day then.
    void passOver();

private:
    enum class Retry { allowed, spent };

    std::chrono::nanoseconds untilDue() const;
    void wait(std::chrono::nanoseconds delay);
    void woke();

    Services m_services;
    std::function<void()> m_due;
    Retry m_retry = Retry::allowed;
    bool m_isOn = false;
    Registration m_timer;
    Registration m_wakes;
};

}
