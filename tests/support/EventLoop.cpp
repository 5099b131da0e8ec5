#include "support/EventLoop.h"

#include <QCoreApplication>
#include <QTimer>

namespace Quillory {

EventLoop::EventLoop()
{
    if (QCoreApplication::instance())
        return;
    static int argumentCount = 1;
    static char name[] = "test";
    static char* arguments[] = { name, nullptr };
    m_application = std::make_unique<QCoreApplication>(argumentCount, arguments);
}

EventLoop::~EventLoop() = default;

bool EventLoop::runUntil(std::function<bool()> const& condition, std::chrono::milliseconds bound)
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

}
