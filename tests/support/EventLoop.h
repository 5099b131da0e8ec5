#pragma once

#include <QCoreApplication>
#include <QTimer>

#include <chrono>
#include <functional>
#include <memory>

namespace Quillory {

// The main thread's real event loop, for tests of what stands on it. Makes the application object when there is none.
class EventLoop {
public:
    EventLoop()
    {
        static int argumentCount = 1;
        static char name[] = "test";
        static char* arguments[] = { name, nullptr };
        if (!QCoreApplication::instance())
            m_application = std::make_unique<QCoreApplication>(argumentCount, arguments);
    }

    // Runs the loop until `condition` holds, asked after every turn and every few milliseconds. False when the bound
    // passed first.
    bool runUntil(std::function<bool()> const& condition, std::chrono::milliseconds bound = std::chrono::seconds(30))
    {
        QTimer limit;
        limit.setSingleShot(true);
        limit.start(bound);
        // Conditions that other threads or processes fulfil bring no event along.
        QTimer look;
        look.start(std::chrono::milliseconds(2));
        while (!condition()) {
            if (!limit.isActive())
                return false;
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        return true;
    }

private:
    std::unique_ptr<QCoreApplication> m_application;
};

}
