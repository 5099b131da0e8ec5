#include "linux/worker/WorkerPool.h"

#include "linux/worker/WorkerDispatcher.h"

#include <system_error>
#include <utility>
#include <vector>

#include <sys/eventfd.h>
#include <unistd.h>

namespace Quillory {

// What the thread is asked for. Jobs hold it too, to say that they are abandoned.
struct WorkerPool::Requests {
    Requests()
        : wake(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
    {
        if (!wake.isOpen())
            qFatal("No event counter can be had: this process has too many open files");
    }

    void awaken() const
    {
        std::uint64_t const one = 1;
        [[maybe_unused]] auto const written = write(wake.number(), &one, sizeof one);
    }

    void drain() const
    {
        std::uint64_t count = 0;
        [[maybe_unused]] auto const taken = read(wake.number(), &count, sizeof count);
    }

    FileDescriptor const wake;
    std::mutex mutex;
    std::vector<std::weak_ptr<SandboxJob>> jobs;
    bool isToPrepare = false;
    bool ends = false;
    bool hasThread = false;
};

namespace {

// Takes what is asked for to the dispatcher, until nothing is left to do.
void serve(auto& requests, WorkerSettings const& settings)
{
    WorkerDispatcher dispatcher(settings);
    while (true) {
        requests.drain();
        std::vector<std::weak_ptr<SandboxJob>> jobs;
        bool prepares = false;
        {
            std::lock_guard const lock(requests.mutex);
            if (requests.ends)
                return;
            jobs.swap(requests.jobs);
            prepares = std::exchange(requests.isToPrepare, false);
        }
        for (auto& job : jobs)
            dispatcher.add(std::move(job));
        if (prepares)
            dispatcher.prepare();
        if (!dispatcher.step()) {
            std::lock_guard const lock(requests.mutex);
            if (requests.jobs.empty() && !requests.isToPrepare) {
                requests.hasThread = false;
                return;
            }
            continue;
        }
        dispatcher.wait(requests.wake.number());
    }
}

}

WorkerPool::WorkerPool(WorkerSettings settings)
    : m_settings(std::move(settings))
    , m_requests(std::make_shared<Requests>())
{
}

WorkerPool::~WorkerPool()
{
    {
        std::lock_guard const lock(m_requests->mutex);
        m_requests->ends = true;
    }
    m_requests->awaken();
    std::lock_guard const lock(m_threadMutex);
    if (m_thread.joinable())
        m_thread.join();
}

std::shared_ptr<SandboxJob> WorkerPool::start(SandboxRequest request)
{
    auto job = std::make_shared<SandboxJob>(std::move(request));
    job->whenAbandoned([requests = std::weak_ptr(m_requests)] {
        if (auto const living = requests.lock())
            living->awaken();
    });
    {
        std::lock_guard const lock(m_requests->mutex);
        m_requests->jobs.push_back(job);
    }
    ensureThread();
    return job;
}

void WorkerPool::prepare()
{
    {
        std::lock_guard const lock(m_requests->mutex);
        m_requests->isToPrepare = true;
    }
    ensureThread();
}

// Out of threads.
void WorkerPool::refuseAll()
{
    std::vector<std::weak_ptr<SandboxJob>> jobs;
    {
        std::lock_guard const lock(m_requests->mutex);
        m_requests->hasThread = false;
        jobs.swap(m_requests->jobs);
    }
    for (auto const& job : jobs) {
        if (auto const living = job.lock())
            living->finish(std::unexpected(SandboxFailure::unavailable));
    }
}

void WorkerPool::ensureThread()
{
    std::lock_guard const threadLock(m_threadMutex);
    {
        std::lock_guard const lock(m_requests->mutex);
        if (std::exchange(m_requests->hasThread, true))
            return m_requests->awaken();
    }
    // The one before has let go of everything, or has never been.
    if (m_thread.joinable())
        m_thread.join();
    try {
        m_thread = std::thread([this] { serve(*m_requests, m_settings); });
    } catch (std::system_error const&) {
        refuseAll();
    }
}

}
