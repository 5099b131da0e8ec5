#pragma once

#include "platform/SandboxJob.h"

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>

namespace Quillory {

// Tells one thread which of its jobs have been answered, in the order in which they were.
class Arrivals {
public:
    using Time = std::chrono::steady_clock::time_point;

    void expect(SandboxJob& job, std::size_t number);

    // The number of the next; absent when there is none until then, or when the wait is to end.
    std::optional<std::size_t> next(Time until, std::stop_token const& ended);

private:
    struct Box {
        std::mutex mutex;
        std::condition_variable_any arrived;
        std::deque<std::size_t> numbers;
    };

    std::shared_ptr<Box> m_box = std::make_shared<Box>(); // jobs may be answered when this is gone
};

}
