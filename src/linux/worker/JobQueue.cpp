#include "linux/worker/JobQueue.h"

#include "linux/worker/WorkerProtocol.h"

#include <algorithm>
#include <utility>

namespace Quillory {

namespace {

// Worth the start of one more worker.
constexpr std::size_t workerShare = std::size_t { 64 } << 10U; // bytes

}

void JobQueue::add(QueuedJob job)
{
    auto const isSlow = job.turn == QueuedJob::Turn::slow;
    m_bytes += job.size;
    Key const key { isSlow, job.size > togetherSize ? job.size : 0 };
    m_jobs.emplace(key, std::move(job));
}

std::size_t JobQueue::worthWorkers() const
{
    return std::min(m_jobs.size(), m_bytes / workerShare + 1);
}

QueuedJob JobQueue::takeFirst()
{
    auto job = std::move(m_jobs.extract(m_jobs.begin()).mapped());
    m_bytes -= job.size;
    return job;
}

std::vector<QueuedJob> JobQueue::take(std::size_t workers)
{
    using enum QueuedJob::Turn;
    std::vector<QueuedJob> taken;
    // Towards the end requests grow smaller, so that all workers end at the same time.
    auto const most = std::min(togetherSize, m_bytes / (2 * workers));
    std::size_t bytes = 0;
    while (!m_jobs.empty() && taken.size() < WorkerProtocol::mostItems) {
        if (m_jobs.begin()->second.job.expired()) {
            takeFirst();
            continue;
        }
        auto const& next = m_jobs.begin()->second;
        auto const mayJoin = [&] {
            return next.turn == together && taken.front().turn == together && bytes + next.size <= most;
        };
        if (!taken.empty() && !mayJoin())
            break;
        bytes += next.size;
        taken.push_back(takeFirst());
    }
    return taken;
}

}
