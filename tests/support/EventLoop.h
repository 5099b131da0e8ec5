#pragma once

#include <chrono>
#include <functional>
#include <memory>

class QCoreApplication;

namespace Quillory {

// The main thread's real event loop, for tests of what stands on it. Makes the application object when there is none.
class EventLoop {
public:
    EventLoop();
    ~EventLoop();

    // Runs the loop until `condition` holds, asked after every turn and every few milliseconds. False when the bound
    // passed first.
    bool runUntil(std::function<bool()> const& condition, std::chrono::milliseconds bound = std::chrono::seconds(30));

private:
    std::unique_ptr<QCoreApplication> m_application;
};

}
