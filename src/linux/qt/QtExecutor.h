#pragma once

#include "linux/qt/WorkerThreads.h"
#include "platform/Executor.h"

#include <QSocketNotifier>

#include <deque>
#include <memory>
#include <mutex>
#include <optional>

namespace Quillory {

// The real clock, Qt's event loop and worker threads. Lives on the main thread, within the application object's life.
// Due actions run one per turn of the loop, in order of deadline, then of arrival. At its end it waits for the workers
// that run; work that has not begun and results that have not arrived are dropped.
class QtExecutor final : public Executor {
public:
    QtExecutor();
    ~QtExecutor() override;

    std::chrono::nanoseconds now() const override;
    Registration after(std::chrono::nanoseconds delay, Action action) override;
    Registration runDetached(Work work) override;
    void letGo(Action owner) override;

    // Ends the workers before the end of this object, without waiting for them longer than `patience`: one may wait for
    // a drive that does not answer. False when one still runs; the process has to end then without destroying anything.
    bool stopWorkers(std::chrono::milliseconds patience) { return m_workers.stop(patience); }

private:
    class Timers;
    struct Task;
    struct Result {
        std::shared_ptr<Task> task;
        Action action;
    };

    void hand(Result result); // on a worker
    std::optional<Result> takeResult();
    void deliverOne();

    std::unique_ptr<Timers> m_timers;
    int m_arrivals; // an event counter: one unit for each result that waits
    std::unique_ptr<QSocketNotifier> m_notifier;
    std::mutex m_mutex;
    std::deque<Result> m_results;
    WorkerThreads m_workers;
};

}
