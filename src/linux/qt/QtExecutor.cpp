#include "linux/qt/QtExecutor.h"

#include "platform/Lifetime.h"

#include <QBasicTimer>
#include <QCoreApplication>
#include <QTimerEvent>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <map>
#include <thread>
#include <utility>

#include <sys/eventfd.h>
#include <unistd.h>

namespace Quillory {

namespace {

using namespace std::chrono_literals;

// Beyond it a timer wakes only to look at its deadline again: the loop's timers count milliseconds in an int.
constexpr std::chrono::milliseconds longestWait = 24h;

// More than the processors, so that work which waits for a slow disk doesn't hold up what follows it.
std::size_t workerLimit()
{
    return std::max<std::size_t>(std::thread::hardware_concurrency(), 2) + 2;
}

std::chrono::nanoseconds monotonicNow()
{
    return std::chrono::steady_clock::now().time_since_epoch();
}

}

class QtExecutor::Timers final : public QObject {
public:
    Registration add(std::chrono::nanoseconds delay, Action action)
    {
        auto const start = monotonicNow();
        auto const longest = std::chrono::nanoseconds::max() - start;
        Key const key { start + std::clamp(delay, std::chrono::nanoseconds::zero(), longest), m_arrivals++ };
        m_waiting.emplace(key, std::move(action));
        arm();
        return Registration(m_lifetime.guarded([this, key] { remove(key); }));
    }

protected:
    void timerEvent(QTimerEvent* event) override
    {
        if (event->timerId() == m_timer.timerId())
            runDue();
    }

    bool event(QEvent* event) override
    {
        if (event->type() != QEvent::User)
            return QObject::event(event);
        m_isWakeUnderWay = false;
        runDue();
        return true;
    }

private:
    struct Key {
        std::chrono::nanoseconds deadline;
        std::uint64_t arrival;
        auto operator<=>(Key const&) const = default;
    };

    void remove(Key const& key)
    {
        // Destroyed after the table is whole again: what the action holds may end other timers.
        auto const node = m_waiting.extract(key);
        if (node)
            arm();
    }

    // The loop may wake early by a fraction: the deadline decides, never the wake-up.
    void runDue()
    {
        if (m_waiting.empty() || m_waiting.begin()->first.deadline > monotonicNow()) {
            arm();
            return;
        }
        auto node = m_waiting.extract(m_waiting.begin());
        arm(); // before the action, which may run a loop of its own
        node.mapped()();
    }

    void arm()
    {
        if (m_waiting.empty()) {
            m_timer.stop();
            return;
        }
        auto const wait = m_waiting.begin()->first.deadline - monotonicNow();
        if (wait <= 0ns) {
            m_timer.stop();
            if (!std::exchange(m_isWakeUnderWay, true))
                QCoreApplication::postEvent(this, new QEvent(QEvent::User));
            return;
        }
        auto const rounded = std::min(std::chrono::ceil<std::chrono::milliseconds>(wait), longestWait);
        m_timer.start(static_cast<int>(rounded.count()), Qt::PreciseTimer, this);
    }

    std::map<Key, Action> m_waiting;
    std::uint64_t m_arrivals = 0;
    bool m_isWakeUnderWay = false;
    QBasicTimer m_timer;
    Lifetime m_lifetime;
};

struct QtExecutor::Task {
    std::atomic<bool> isCancelled = false;
};

QtExecutor::QtExecutor()
    : m_timers(std::make_unique<Timers>())
    , m_arrivals(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK | EFD_SEMAPHORE))
    , m_workers(workerLimit())
{
    if (m_arrivals < 0)
        qFatal("No event counter can be had: this process has too many open files");
    m_notifier = std::make_unique<QSocketNotifier>(m_arrivals, QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, m_notifier.get(), [this] { deliverOne(); });
}

QtExecutor::~QtExecutor()
{
    m_notifier.reset();
    m_workers.stop();
    close(m_arrivals);
}

std::chrono::nanoseconds QtExecutor::now() const
{
    return monotonicNow();
}

Registration QtExecutor::after(std::chrono::nanoseconds delay, Action action)
{
    return m_timers->add(delay, std::move(action));
}

Registration QtExecutor::runDetached(Work work)
{
    auto task = std::make_shared<Task>();
    m_workers.start([this, task, work = std::move(work)]() mutable {
        Result result { task, work() };
        work = nullptr;
        if (!task->isCancelled)
            hand(std::move(result));
    });
    return Registration([task] { task->isCancelled = true; });
}

void QtExecutor::letGo(Action owner)
{
    m_workers.start([owner = std::move(owner)] { });
}

void QtExecutor::hand(Result result)
{
    {
        std::lock_guard const lock(m_mutex);
        m_results.push_back(std::move(result));
    }
    std::uint64_t const one = 1;
    // It can't fail: the counter would have to pass 2^64 - 2.
    [[maybe_unused]] auto const written = write(m_arrivals, &one, sizeof one);
}

std::optional<QtExecutor::Result> QtExecutor::takeResult()
{
    std::lock_guard const lock(m_mutex);
    if (m_results.empty())
        return std::nullopt;
    auto result = std::move(m_results.front());
    m_results.pop_front();
    return result;
}

void QtExecutor::deliverOne()
{
    std::uint64_t one = 0;
    if (read(m_arrivals, &one, sizeof one) != sizeof one)
        return;
    auto result = takeResult();
    if (!result)
        return;
    if (result->task->isCancelled)
        letGo(std::move(result->action));
    else
        result->action();
}

}
