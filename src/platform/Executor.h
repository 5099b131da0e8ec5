#pragma once

#include "platform/Registration.h"

#include <chrono>
#include <functional>
#include <utility>

namespace Quillory {

// All waiting of the program: time, later turns of the main thread, and work on other threads.
// Every operation is called on the main thread. What it returns is a task: while it lives the work is owed,
// and its end cancels. A cancelled worker runs on, its result is dropped.
class Executor {
public:
    using Action = std::move_only_function<void()>;
    // Runs on a worker and returns what is to run on the main thread afterwards.
    using Work = std::move_only_function<Action()>;

    virtual ~Executor() = default;

    // A monotonic clock, of use for differences only. Events of the session bear times of the same clock.
    virtual std::chrono::nanoseconds now() const = 0;

    // Runs `action` once on the main thread, not before `delay` has passed and never inside this call.
    virtual Registration after(std::chrono::nanoseconds delay, Action action) = 0;

    // Runs `work` on a worker at once, cancelled or not; then, unless cancelled, what it returned on the main thread.
    virtual Registration runDetached(Work work) = 0;

    // Destroys `value` on a worker, for what takes too long to let go on the main thread.
    virtual void letGo(Action owner) = 0;

    // Runs `action` in a later turn of the main thread.
    Registration post(Action action) { return after(std::chrono::nanoseconds::zero(), std::move(action)); }

    // Runs `work` on a worker and hands its result to `done` on the main thread.
    template<typename Function, typename Done>
    Registration detach(Function work, Done done)
    {
        return runDetached([work = std::move(work), done = std::move(done)]() mutable -> Action {
            return [result = work(), done = std::move(done)]() mutable { done(std::move(result)); };
        });
    }

    // Lets `value` go on a worker.
    template<typename Value>
    void discard(Value value)
    {
        letGo([value = std::move(value)] { });
    }
};

}
