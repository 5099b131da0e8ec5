#pragma once

#include <chrono>
#include <future>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>

namespace Quillory {

// How long the main thread waits for a drive that may not answer: a healthy one takes microseconds.
inline constexpr std::chrono::milliseconds driveAnswerTime { 250 };

// Runs `call` on a thread of its own and gives what it returns, or nothing when that takes longer than `bound`. Then the
// call goes on by itself and may outlive its caller: it holds by value whatever it uses.
template<typename Call>
auto resultWithin(std::chrono::milliseconds bound, Call call) -> std::optional<decltype(call())>
{
    std::packaged_task<decltype(call())()> task(std::move(call));
    auto result = task.get_future();
    try {
        std::thread(std::move(task)).detach();
    } catch (std::system_error const&) {
        return std::nullopt; // out of threads
    }
    if (result.wait_for(bound) != std::future_status::ready)
        return std::nullopt;
    return result.get();
}

}
