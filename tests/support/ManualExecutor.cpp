#include "support/ManualExecutor.h"

#include <algorithm>

namespace Quillory {

struct ManualExecutor::Timer {
    std::chrono::nanoseconds deadline;
    Action action;
    bool isCancelled = false;
};

struct ManualExecutor::Detached {
    Work work;
    Action result;
    bool isCancelled = false;
};

ManualExecutor::ManualExecutor() = default;
ManualExecutor::~ManualExecutor() = default;

std::chrono::nanoseconds ManualExecutor::now() const
{
    return m_now;
}

Registration ManualExecutor::after(std::chrono::nanoseconds delay, Action action)
{
    auto const deadline = m_now
        + std::clamp(delay, std::chrono::nanoseconds::zero(), std::chrono::nanoseconds::max() - m_now);
    auto timer = std::make_shared<Timer>(deadline, std::move(action));
    auto const place = std::ranges::upper_bound(
        m_timers, deadline, {}, [](auto const& other) { return other->deadline; });
    m_timers.insert(place, timer);
    return Registration([timer] {
        timer->isCancelled = true;
        timer->action = nullptr;
    });
}

Registration ManualExecutor::runDetached(Work work)
{
    auto detached = std::make_shared<Detached>(std::move(work));
    m_queued.push_back(detached);
    return Registration([detached] { detached->isCancelled = true; });
}

void ManualExecutor::letGo(Action owner)
{
    m_discards.push_back(std::move(owner));
}

std::shared_ptr<ManualExecutor::Timer> ManualExecutor::takeNextDue(std::chrono::nanoseconds limit)
{
    std::erase_if(m_timers, [](auto const& timer) { return timer->isCancelled; });
    if (m_timers.empty() || m_timers.front()->deadline > limit)
        return nullptr;
    auto timer = m_timers.front();
    m_timers.erase(m_timers.begin());
    return timer;
}

void ManualExecutor::advance(std::chrono::nanoseconds duration)
{
    auto const end = m_now + duration;
    while (auto timer = takeNextDue(end)) {
        m_now = std::max(m_now, timer->deadline);
        auto action = std::move(timer->action);
        action();
    }
    m_now = std::max(m_now, end);
}

bool ManualExecutor::runWork()
{
    m_discards.clear();
    if (m_queued.empty())
        return false;
    auto detached = m_queued.front();
    m_queued.erase(m_queued.begin());
    detached->result = detached->work();
    detached->work = nullptr;
    m_waiting.push_back(std::move(detached));
    return true;
}

bool ManualExecutor::finishWork(std::size_t index)
{
    if (index >= m_waiting.size())
        return false;
    auto const place = m_waiting.begin() + static_cast<std::ptrdiff_t>(index);
    auto detached = *place;
    m_waiting.erase(place);
    if (detached->isCancelled)
        return false;
    detached->result();
    return true;
}

bool ManualExecutor::runAndFinishWork()
{
    return runWork() && finishWork(m_waiting.size() - 1);
}

void ManualExecutor::settle()
{
    do {
        runPosted();
        while (runWork()) { }
        while (!m_waiting.empty())
            finishWork();
        runPosted();
    } while (!m_queued.empty());
    m_discards.clear();
}

std::size_t ManualExecutor::pendingTimers() const
{
    return static_cast<std::size_t>(
        std::ranges::count_if(m_timers, [](auto const& timer) { return !timer->isCancelled; }));
}

std::size_t ManualExecutor::queuedWork() const
{
    return m_queued.size();
}

std::size_t ManualExecutor::waitingResults() const
{
    return m_waiting.size();
}

std::size_t ManualExecutor::owedDiscards() const
{
    return m_discards.size();
}

}
