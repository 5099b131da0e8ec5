#pragma once

#include "platform/Executor.h"

#include <chrono>
#include <cstddef>
#include <memory>
#include <vector>

namespace Quillory {

// Time and threads turned by hand, on one thread. Nothing runs unless the test says so.
class ManualExecutor final : public Executor {
public:
    ManualExecutor();
    ~ManualExecutor() override;

    std::chrono::nanoseconds now() const override;
    Registration after(std::chrono::nanoseconds delay, Action action) override;
    Registration runDetached(Work work) override;
    void letGo(Action owner) override;

    // Turns the clock on, and runs by the way what falls due, in order of deadline, then of arrival.
    void advance(std::chrono::nanoseconds duration);

    // Runs what is due now, and what that posts, until nothing is due any more.
    void runPosted() { advance(std::chrono::nanoseconds::zero()); }

    // Runs the oldest queued work as its worker would, cancelled or not. Its result then waits for `finishWork`.
    // False when no work is queued.
    bool runWork();

    // Delivers the result of work that has run: the `index`th of those that wait, oldest first. True when it reached
    // the main thread, false when it was dropped since it was cancelled, or when there is none.
    bool finishWork(std::size_t index = 0);

    // Runs the oldest queued work and delivers its result (not those that waited before it).
    bool runAndFinishWork();

    // Everything that can run now without the clock moving: posts, work, deliveries, until all is quiet.
    void settle();

    std::size_t pendingTimers() const;
    std::size_t queuedWork() const;
    std::size_t waitingResults() const;

    // What `discard` was given and no worker has destroyed yet. Work that runs, and `settle`, destroy it.
    std::size_t owedDiscards() const;

private:
    struct Timer;
    struct Detached;

    std::shared_ptr<Timer> takeNextDue(std::chrono::nanoseconds limit);

    std::chrono::nanoseconds m_now = std::chrono::hours(1);
    std::vector<std::shared_ptr<Timer>> m_timers; // in order of deadline, then of arrival
    std::vector<std::shared_ptr<Detached>> m_queued;
    std::vector<std::shared_ptr<Detached>> m_waiting;
    std::vector<Action> m_discards;
};

}
