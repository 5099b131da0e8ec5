#pragma once

#include <QSocketNotifier>

#include <functional>

namespace Quillory {

// Turns SIGTERM, SIGINT and SIGHUP into a call on the main thread. One per process.
class TerminationSignals {
public:
    // Keeps the signals from the calling thread and from all that it starts, so that they arrive here alone.
    static void block();

    explicit TerminationSignals(std::function<void()> terminate);
    ~TerminationSignals();
    TerminationSignals(TerminationSignals const&) = delete;
    TerminationSignals& operator=(TerminationSignals const&) = delete;

private:
    int m_descriptor;
    QSocketNotifier m_notifier;
};

}
