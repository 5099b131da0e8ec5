#pragma once

#include "platform/SandboxJob.h"

#include <compare>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <vector>

namespace Quillory {

// A job that waits for a worker, or has one.
struct QueuedJob {
    enum class Turn : std::uint8_t {
        together, // small ones go to a worker in one request
        alone,    // a request that it was part of came to nothing
        slow,     // it has had its slice, and waits until nothing else does
    };

    std::weak_ptr<SandboxJob> job;
    std::size_t size = 0; // bytes
    Turn turn = Turn::together;
};

// Jobs in the order in which workers take them: the small ones as they came, the others by their size, then the slow ones. Those that nobody waits for any more are
// dropped when their turn comes.
class JobQueue {
public:
    static constexpr std::size_t togetherSize = std::size_t { 128 } << 10U; // bytes in one request

    void add(QueuedJob job);

    bool isEmpty() const { return m_jobs.empty(); }

    // Whether any waits that is not slow.
    bool hasFresh() const { return !m_jobs.empty() && !m_jobs.begin()->first.isSlow; }

    // How many workers could be of use.
    std::size_t worthWorkers() const;

    // The next request for one of `workers`; empty when nothing is left.
    std::vector<QueuedJob> take(std::size_t workers);

private:
    struct Key {
        bool isSlow = false;
        std::size_t size = 0; // 0 for small ones
        auto operator<=>(Key const&) const = default;
    };
    using Jobs = std::multimap<Key, QueuedJob>;

    QueuedJob takeFirst();

    Jobs m_jobs;
    std::size_t m_bytes = 0;
};

}
