#pragma once

#include <functional>

namespace Quillory {

// Runs the program's ending exactly once: by the hand of its owner, or when a library ends the process by exit(), as
// the toolkit does when the display is lost. The process then ends with a failure right after it, without the ends of
// objects that other threads may still use. One per process; main thread only.
class OrderlyEnd {
public:
    explicit OrderlyEnd(std::function<void()> ending);
    ~OrderlyEnd();
    OrderlyEnd(OrderlyEnd const&) = delete;
    OrderlyEnd& operator=(OrderlyEnd const&) = delete;

    void run();

    // Ends the process without the ends of objects that other threads may still use.
    [[noreturn]] static void leave(int exitCode);

private:
    static void atExit();

    std::function<void()> m_ending;
};

}
