#include "linux/qt/WorkerThreads.h"

#include <algorithm>
#include <system_error>
#include <utility>

namespace Quillory {

WorkerThreads::WorkerThreads(std::size_t most)
    : m_most(std::max<std::size_t>(most, 1))
{
}

WorkerThreads::~WorkerThreads()
{
    stop();
}

void WorkerThreads::stop()
{
    end();
    for (auto& thread : m_threads)
        thread.join();
    m_threads.clear();
}

bool WorkerThreads::stop(std::chrono::milliseconds patience)
{
    end();
    std::unique_lock lock(m_mutex);
    return m_threadEnded.wait_for(lock, patience, [this] { return m_living == 0; });
}

void WorkerThreads::end()
{
    std::deque<Job> dropped;
    {
        std::lock_guard const lock(m_mutex);
        m_ends = true;
        dropped.swap(m_jobs);
    }
    m_wake.notify_all();
}

void WorkerThreads::start(Job job)
{
    bool needsThread = false;
    {
        std::lock_guard const lock(m_mutex);
        m_jobs.push_back(std::move(job));
        needsThread = m_jobs.size() > m_idle;
    }
    if (needsThread && m_threads.size() < m_most)
        addThread();
    m_wake.notify_one();
}

void WorkerThreads::addThread()
{
    try {
        m_threads.emplace_back([this] { runJobs(); });
    } catch (std::system_error const&) {
        // Out of threads: those that there are take the job in their turn.
        if (m_threads.empty())
            throw;
    }
}

void WorkerThreads::runJobs()
{
    std::unique_lock lock(m_mutex);
    ++m_living;
    while (true) {
        ++m_idle;
        m_wake.wait(lock, [this] { return m_ends || !m_jobs.empty(); });
        --m_idle;
        if (m_ends)
            break;
        auto job = std::move(m_jobs.front());
        m_jobs.pop_front();
        lock.unlock();
        job();
        job = nullptr;
        lock.lock();
    }
    --m_living;
    m_threadEnded.notify_one();
}

}
