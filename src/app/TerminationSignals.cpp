#include "TerminationSignals.h"

#include <csignal>

#include <pthread.h>
#include <sys/signalfd.h>
#include <unistd.h>

namespace Quillory {

namespace {

sigset_t terminationSignals()
{
    sigset_t signals;
    sigemptyset(&signals);
    for (int const signal : { SIGTERM, SIGINT, SIGHUP })
        sigaddset(&signals, signal);
    return signals;
}

int openDescriptor()
{
    auto const signals = terminationSignals();
    return signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK);
}

}

void TerminationSignals::block()
{
    auto const signals = terminationSignals();
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
}

TerminationSignals::TerminationSignals(std::function<void()> terminate)
    : m_descriptor(openDescriptor())
    , m_notifier(m_descriptor, QSocketNotifier::Read)
{
    QObject::connect(&m_notifier, &QSocketNotifier::activated, [this, terminate = std::move(terminate)] {
        signalfd_siginfo information;
        if (read(m_descriptor, &information, sizeof information) == sizeof information)
            terminate();
    });
}

TerminationSignals::~TerminationSignals()
{
    m_notifier.setEnabled(false);
    close(m_descriptor);
}

}
