#pragma once

#include "linux/worker/JobQueue.h"
#include "linux/worker/WorkerProcess.h"
#include "linux/worker/WorkerSettings.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <list>
#include <optional>
#include <vector>

namespace Quillory {

// The workers, what each is at, and who comes next. Belongs to one thread, which calls `wait` and `step` in turn.
class WorkerDispatcher {
public:
    explicit WorkerDispatcher(WorkerSettings const& settings);
    ~WorkerDispatcher();
    WorkerDispatcher(WorkerDispatcher const&) = delete;
    WorkerDispatcher& operator=(WorkerDispatcher const&) = delete;

    void add(std::weak_ptr<SandboxJob> job);

    // Starts a worker where there is none.
    void prepare();

    // Waits until a worker has something to tell, a limit is reached, or `wake` can be read.
    void wait(int wake);

    // Takes what workers have told, looks after limits, and hands out work. False when nothing is left: neither work nor
    // a worker.
    bool step();

private:
    using Clock = std::chrono::steady_clock;
    using Nanoseconds = std::chrono::nanoseconds;
    enum class State : std::uint8_t { starting, idle, working, ending };

    struct Worker {
        WorkerProcess process;
        State state = State::starting;
        Clock::time_point since; // of the state
        std::vector<QueuedJob> jobs; // while working
        std::optional<MemoryFile> answers;
        Nanoseconds processorTime {}; // at the beginning of the work
        Nanoseconds allowance {};
    };
    using Workers = std::list<Worker>;
    struct Answered {
        Worker& worker;
        std::vector<QueuedJob> jobs;
        std::optional<SealedBytes> bytes;
        std::vector<std::byte> sizes;
    };

    void setState(Worker& worker, State state);
    std::size_t count(State state) const;

    void receive(Worker& worker, std::vector<Answered>& answered);
    void take(Answered& answered);
    void crashed(Worker& worker);
    void crashed(std::vector<QueuedJob> jobs);

    void lookAtLimits();
    void lookAtLimits(Worker& worker);
    void makeRoom();
    void replace(Worker& worker, QueuedJob::Turn turn);
    void end(Worker& worker);

    void startWorkers(std::size_t wanted);
    void couldNotStart();
    void giveUp();
    void handOut();
    bool handOut(Worker& worker);

    std::optional<Clock::time_point> nextLook(Worker const& worker) const;
    int timeout() const; // milliseconds

    WorkerSettings const& m_settings;
    JobQueue m_queue;
    Workers m_workers;
    int m_failedStarts = 0; // in a row
};

}
