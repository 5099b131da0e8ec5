#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace Quillory {

// Threads that run what they are given, the oldest first. They start when they are needed and sleep in between.
// Our own and not Qt's pool, so that every hand-over is one that the thread sanitizer can see.
class WorkerThreads {
public:
    using Job = std::move_only_function<void()>;

    explicit WorkerThreads(std::size_t most);

    ~WorkerThreads();

    WorkerThreads(WorkerThreads const&) = delete;
    WorkerThreads& operator=(WorkerThreads const&) = delete;

    // The job is destroyed on its thread, right after it has run.
    void start(Job job);

    // Waits for the jobs that run, and drops those that have not begun, as the end of this object does.
    void stop();

    // The same, but waits no longer than `patience`: false when a job still runs then.
    bool stop(std::chrono::milliseconds patience);

private:
    void runJobs();
    void addThread();
    void end();

    std::size_t m_most;
    std::mutex m_mutex;
    std::condition_variable m_wake;
    std::condition_variable m_threadEnded;
    std::deque<Job> m_jobs;
    std::size_t m_idle = 0;
    std::size_t m_living = 0; // threads that still take jobs or run one
    bool m_ends = false;
    std::vector<std::thread> m_threads; // the owner's thread only
};

}
