#pragma once

#include "platform/Executor.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <memory>
#include <vector>

namespace Quillory {

// Time and threads turned by hand, on one thread. Nothing runs unless the test says so; what is let go goes at once.
class ManualExecutor final : public Executor {
public:
    std::chrono::nanoseconds now() const override { return m_now; }

    Registration after(std::chrono::nanoseconds delay, Action action) override
    {
        auto const longest = std::chrono::nanoseconds::max() - m_now;
        auto const deadline = m_now + std::clamp(delay, std::chrono::nanoseconds::zero(), longest);
        auto timer = std::make_shared<Timer>(deadline, std::move(action));
        m_timers.insert(std::ranges::upper_bound(m_timers, deadline, {}, &Timer::deadlineOf), timer);
        return Registration([timer] {
            timer->isCancelled = true;
            timer->action = nullptr;
        });
    }

    Registration runDetached(Work work) override
    {
        auto detached = std::make_shared<Detached>(std::move(work));
        m_queued.push_back(detached);
        return Registration([detached] { detached->isCancelled = true; });
    }

    void letGo(Action) override { }

    // Turns the clock on, and runs by the way what falls due, in order of deadline, then of arrival.
    void advance(std::chrono::nanoseconds duration)
    {
        auto const end = m_now + duration;
        while (auto timer = takeNextDue(end)) {
            m_now = std::max(m_now, timer->deadline);
            auto action = std::move(timer->action);
            action();
        }
        m_now = std::max(m_now, end);
    }

    // Runs what is due now, and what that posts, until nothing is due any more.
    void runPosted() { advance(std::chrono::nanoseconds::zero()); }

    // Runs what is due now, and leaves what that posts to a later turn.
    void turn()
    {
        auto const due = std::ranges::upper_bound(m_timers, m_now, {}, &Timer::deadlineOf);
        std::vector const now(m_timers.begin(), due);
        for (auto const& timer : now) {
            if (timer->isCancelled)
                continue;
            std::erase(m_timers, timer);
            auto action = std::move(timer->action);
            action();
        }
    }

    // Runs the oldest queued work as its worker would, cancelled or not. Its result then waits for `finishWork`.
    // False when no work is queued.
    bool runWork()
    {
        if (m_queued.empty())
            return false;
        auto detached = take(m_queued, 0);
        detached->result = detached->work();
        detached->work = nullptr;
        m_waiting.push_back(std::move(detached));
        return true;
    }

    // Delivers the result of work that has run: the `index`th of those that wait, oldest first. True when it reached
    // the main thread, false when it was dropped since it was cancelled, or when there is none.
    bool finishWork(std::size_t index = 0)
    {
        if (index >= m_waiting.size())
            return false;
        auto const detached = take(m_waiting, index);
        bool const isOwed = !detached->isCancelled; // what it calls may end its task
        if (isOwed)
            detached->result();
        return isOwed;
    }

    // Runs the oldest queued work and delivers its result (not those that waited before it).
    bool runAndFinishWork() { return runWork() && finishWork(m_waiting.size() - 1); }

    // Everything that can run now without the clock moving: posts, work, deliveries, until all is quiet.
    void settle()
    {
        do {
            runPosted();
            while (runWork()) { }
            while (!m_waiting.empty())
                finishWork();
            runPosted();
        } while (!m_queued.empty());
    }

    std::size_t pendingTimers() const
    {
        return static_cast<std::size_t>(
            std::ranges::count_if(m_timers, [](auto const& timer) { return !timer->isCancelled; }));
    }

    std::size_t queuedWork() const { return m_queued.size(); }

private:
    struct Timer {
        std::chrono::nanoseconds deadline;
        Action action;
        bool isCancelled = false;
        static std::chrono::nanoseconds deadlineOf(std::shared_ptr<Timer> const& timer) { return timer->deadline; }
    };

    struct Detached {
        Work work;
        Action result;
        bool isCancelled = false;
    };

    template<typename Element>
    static std::shared_ptr<Element> take(std::vector<std::shared_ptr<Element>>& from, std::size_t index)
    {
        auto const place = from.begin() + static_cast<std::ptrdiff_t>(index);
        auto taken = std::move(*place);
        from.erase(place);
        return taken;
    }

    std::shared_ptr<Timer> takeNextDue(std::chrono::nanoseconds limit)
    {
        std::erase_if(m_timers, [](auto const& timer) { return timer->isCancelled; });
        return m_timers.empty() || m_timers.front()->deadline > limit ? nullptr : take(m_timers, 0);
    }

    std::chrono::nanoseconds m_now = std::chrono::hours(1);
    std::vector<std::shared_ptr<Timer>> m_timers; // in order of deadline, then of arrival
    std::vector<std::shared_ptr<Detached>> m_queued;
    std::vector<std::shared_ptr<Detached>> m_waiting;
};

}
