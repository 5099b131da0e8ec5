#include "updates/updater/ScheduledChecks.h"

#include "updates/feed/CheckSchedule.h"

#include <algorithm>
#include <utility>

namespace Quillory {

ScheduledChecks::ScheduledChecks(Services services, std::function<void()> due)
    : m_services(std::move(services))
    , m_due(std::move(due))
    , m_wakes(m_services.session.observeDidWake([this] { woke(); }))
{
}

void ScheduledChecks::begin()
{
    m_isOn = true;
    wait(std::max<std::chrono::nanoseconds>(untilDue(), CheckSchedule::afterStart));
}

void ScheduledChecks::resume()
{
    m_isOn = true;
    wait(untilDue());
}

void ScheduledChecks::stop()
{
    m_isOn = false;
    m_timer.end();
}

void ScheduledChecks::succeeded()
{
    m_retry = Retry::allowed;
    wait(untilDue());
}

void ScheduledChecks::failed()
{
    auto const retry = std::exchange(m_retry, m_retry == Retry::allowed ? Retry::spent : Retry::allowed);
    wait(retry == Retry::allowed ? CheckSchedule::secondTry : untilDue());
}

void ScheduledChecks::passOver()
{
    wait(CheckSchedule::interval);
}

std::chrono::nanoseconds ScheduledChecks::untilDue() const
{
    return CheckSchedule::untilDue(m_services.lastAttempt(), m_services.wallClock());
}

void ScheduledChecks::wait(std::chrono::nanoseconds delay)
{
    if (m_isOn)
        m_timer = m_services.executor.after(delay, [this] { m_due(); });
}

// Timers stand still while the machine sleeps. A network that is not up yet is tried again.
void ScheduledChecks::woke()
{
    m_retry = Retry::allowed;
    wait(untilDue());
}

}
