#include "linux/worker/WorkerDispatcher.h"

#include <algorithm>
#include <span>
#include <utility>

#include <poll.h>

namespace Quillory {

namespace {

using namespace std::chrono_literals;

constexpr int mostFailedStarts = 3;
constexpr auto startTime = 20s; // on the clock: a machine may be very busy

auto isIn(auto state)
{
    return [state](auto const& worker) { return worker.state == state; };
}

std::size_t sizeOf(std::vector<QueuedJob> const& jobs)
{
    std::size_t size = 0;
    for (auto const& job : jobs)
        size += job.size;
    return size;
}

bool isSlow(std::vector<QueuedJob> const& jobs)
{
    return jobs.front().turn == QueuedJob::Turn::slow;
}

void finish(QueuedJob const& queued, SandboxFailure failure)
{
    if (auto const job = queued.job.lock())
        job->finish(std::unexpected(failure));
}

}

WorkerDispatcher::WorkerDispatcher(WorkerSettings const& settings)
    : m_settings(settings)
{
}

WorkerDispatcher::~WorkerDispatcher()
{
    for (auto& worker : m_workers) {
        worker.process.kill();
        for (auto const& job : worker.jobs)
            finish(job, SandboxFailure::unavailable);
    }
    giveUp();
}

void WorkerDispatcher::add(std::weak_ptr<SandboxJob> job)
{
    if (auto const living = job.lock())
        m_queue.add({ .job = std::move(job), .size = static_cast<std::size_t>(living->request().bytes.size()) });
}

void WorkerDispatcher::prepare()
{
    if (std::ranges::all_of(m_workers, isIn(State::ending)))
        startWorkers(1);
}

void WorkerDispatcher::setState(Worker& worker, State state)
{
    worker.state = state;
    worker.since = Clock::now();
}

std::size_t WorkerDispatcher::count(State state) const
{
    return static_cast<std::size_t>(std::ranges::count_if(m_workers, isIn(state)));
}

void WorkerDispatcher::wait(int wake)
{
    std::vector<pollfd> watched { { .fd = wake, .events = POLLIN, .revents = 0 } };
    for (auto const& worker : m_workers) {
        auto const isEnding = worker.state == State::ending;
        watched.push_back({ .fd = isEnding ? worker.process.processDescriptor() : worker.process.socket(),
            .events = POLLIN,
            .revents = 0 });
    }
    poll(watched.data(), watched.size(), timeout());
}

bool WorkerDispatcher::step()
{
    std::vector<Answered> answered;
    for (auto& worker : m_workers)
        receive(worker, answered);
    lookAtLimits();
    makeRoom();
    handOut();
    // After the next work has gone out: to look at answers takes time that workers need not wait for.
    for (auto& answer : answered)
        take(answer);
    handOut(); // what was not answered
    std::erase_if(m_workers, [](Worker& worker) { return worker.state == State::ending && worker.process.collect(); });
    return !m_workers.empty() || !m_queue.isEmpty();
}

void WorkerDispatcher::receive(Worker& worker, std::vector<Answered>& answered)
{
    if (worker.state == State::ending)
        return;
    std::vector<std::byte> message;
    auto const received = worker.process.receive(message);
    if (received == WorkerProcess::Received::nothing)
        return;
    if (received == WorkerProcess::Received::end || worker.state == State::idle)
        return crashed(worker);
    if (worker.state == State::starting) {
        if (!std::ranges::equal(message, std::as_bytes(std::span(&WorkerProtocol::workerIsReady, 1))))
            return crashed(worker);
        m_failedStarts = 0;
        return setState(worker, State::idle);
    }
    answered.push_back({ worker, std::exchange(worker.jobs, {}), worker.answers->seal(WorkerProtocol::answerLimit),
        std::move(message) });
    worker.answers.reset();
    setState(worker, State::idle);
}

// A worker whose answer is none is not to be trusted with anything more.
void WorkerDispatcher::take(Answered& answered)
{
    auto const pieces = answered.bytes
        ? WorkerProtocol::answersOf(answered.sizes, answered.jobs.size(), answered.bytes->bytes())
        : std::nullopt;
    auto isGood = pieces.has_value();
    for (std::size_t index = 0; isGood && index < answered.jobs.size(); ++index) {
        auto const job = answered.jobs[index].job.lock();
        if (!job)
            continue;
        auto value = job->request().adopt(SealedBytes(answered.bytes->owner(), (*pieces)[index]));
        if (value)
            job->finish(std::move(value));
        else
            isGood = false;
    }
    if (isGood)
        return;
    std::erase_if(answered.jobs, [](QueuedJob const& queued) {
        auto const job = queued.job.lock();
        return !job || job->answer();
    });
    crashed(std::move(answered.jobs));
    if (answered.worker.state != State::ending)
        replace(answered.worker, QueuedJob::Turn::together);
}

void WorkerDispatcher::crashed(Worker& worker)
{
    auto const hasStarted = worker.state != State::starting;
    crashed(std::exchange(worker.jobs, {}));
    end(worker);
    if (!hasStarted)
        couldNotStart();
}

// Which one of several it was shows when each is tried alone.
void WorkerDispatcher::crashed(std::vector<QueuedJob> jobs)
{
    if (jobs.size() == 1 && jobs.front().turn != QueuedJob::Turn::together)
        return finish(jobs.front(), SandboxFailure::crashed);
    for (auto& job : jobs) {
        job.turn = QueuedJob::Turn::alone;
        m_queue.add(std::move(job));
    }
}

void WorkerDispatcher::lookAtLimits()
{
    for (auto& worker : m_workers)
        lookAtLimits(worker);
}

void WorkerDispatcher::lookAtLimits(Worker& worker)
{
    using Turn = QueuedJob::Turn;
    auto const past = Clock::now() - worker.since;
    if (worker.state == State::starting && past > startTime)
        return crashed(worker);
    if (worker.state == State::idle && past >= m_settings.idleTime)
        return end(worker);
    if (worker.state != State::working)
        return;
    if (std::ranges::all_of(worker.jobs, [](auto const& queued) { return queued.job.expired(); }))
        return end(worker);
    auto const used = worker.process.processorTime() - worker.processorTime;
    auto const isOne = worker.jobs.size() == 1;
    if (used >= worker.allowance || past >= worker.allowance * m_settings.patience) {
        if (!isOne)
            return replace(worker, Turn::alone);
        finish(worker.jobs.front(), SandboxFailure::tookTooLong);
        return end(worker);
    }
    if (used >= m_settings.slice && !isSlow(worker.jobs) && m_queue.hasFresh())
        replace(worker, isOne ? Turn::slow : Turn::alone);
}

// A slow job gives its worker up to one that has just come, and begins again later.
void WorkerDispatcher::makeRoom()
{
    if (!m_queue.hasFresh() || count(State::idle) + count(State::starting) > 0
        || m_workers.size() - count(State::ending) < m_settings.most)
        return;
    auto const slow = std::ranges::find_if(
        m_workers, [](Worker const& worker) { return worker.state == State::working && isSlow(worker.jobs); });
    if (slow != m_workers.end())
        replace(*slow, QueuedJob::Turn::slow);
}

void WorkerDispatcher::replace(Worker& worker, QueuedJob::Turn turn)
{
    for (auto& job : std::exchange(worker.jobs, {})) {
        job.turn = std::max(job.turn, turn);
        m_queue.add(std::move(job));
    }
    end(worker);
}

void WorkerDispatcher::end(Worker& worker)
{
    worker.process.kill();
    worker.jobs.clear();
    worker.answers.reset();
    setState(worker, State::ending);
}

void WorkerDispatcher::startWorkers(std::size_t wanted)
{
    while (wanted > 0) {
        if (auto process = WorkerProcess::start(m_settings.program)) {
            m_workers.push_back({ .process = *std::move(process), .since = Clock::now() });
            --wanted;
            continue;
        }
        if (!std::ranges::all_of(m_workers, isIn(State::ending)))
            return; // those that there are take the work in their turn
        couldNotStart();
        if (m_queue.isEmpty())
            return;
    }
}

void WorkerDispatcher::couldNotStart()
{
    if (++m_failedStarts < mostFailedStarts)
        return;
    m_failedStarts = 0;
    giveUp();
}

void WorkerDispatcher::giveUp()
{
    while (!m_queue.isEmpty()) {
        for (auto const& job : m_queue.take(1))
            finish(job, SandboxFailure::unavailable);
    }
}

void WorkerDispatcher::handOut()
{
    for (auto& worker : m_workers) {
        if (worker.state == State::idle && !m_queue.isEmpty() && !handOut(worker))
            crashed(worker);
    }
    if (m_queue.isEmpty())
        return;
    auto const free = m_settings.most - std::min(m_settings.most, m_workers.size() - count(State::ending));
    auto const starting = count(State::starting);
    auto const wanted = m_queue.worthWorkers();
    startWorkers(std::min(free, wanted - std::min(wanted, starting)));
}

bool WorkerDispatcher::handOut(Worker& worker)
{
    worker.jobs = m_queue.take(m_settings.most);
    std::vector<WorkerProtocol::Item> items;
    std::vector<QByteArray> bytes;
    std::erase_if(worker.jobs, [&](QueuedJob const& queued) {
        auto const job = queued.job.lock();
        if (!job)
            return true;
        auto const& request = job->request();
        items.push_back({ request.operation, request.argument, static_cast<std::uint64_t>(request.bytes.size()) });
        bytes.push_back(request.bytes);
        return false;
    });
    if (worker.jobs.empty())
        return true;
    auto const input = MemoryFile::holding(bytes);
    worker.answers = MemoryFile::empty();
    worker.allowance = worker.jobs.size() == 1 ? m_settings.allowance(sizeOf(worker.jobs)) : m_settings.slice;
    worker.processorTime = worker.process.processorTime();
    setState(worker, State::working);
    return input && worker.answers && worker.process.ask(items, *input, *worker.answers, worker.allowance);
}

std::optional<WorkerDispatcher::Clock::time_point> WorkerDispatcher::nextLook(Worker const& worker) const
{
    switch (worker.state) {
    case State::starting:
        return worker.since + startTime;
    case State::idle:
        return worker.since + m_settings.idleTime;
    case State::ending:
        return std::nullopt;
    case State::working:
        break;
    }
    // It can't use more processor time than passes, but for the threads of a large picture.
    auto const used = worker.process.processorTime() - worker.processorTime;
    auto const mayHaveToMakeRoom = m_queue.hasFresh() && !isSlow(worker.jobs);
    auto const limit = mayHaveToMakeRoom ? std::min(worker.allowance, m_settings.slice) : worker.allowance;
    return std::min<Clock::time_point>(
        Clock::now() + std::max<Nanoseconds>(limit - used, 1ms), worker.since + worker.allowance * m_settings.patience);
}

int WorkerDispatcher::timeout() const
{
    auto next = Clock::time_point::max();
    for (auto const& worker : m_workers) {
        if (auto const look = nextLook(worker))
            next = std::min(next, *look);
    }
    if (next == Clock::time_point::max())
        return -1;
    auto const left = std::chrono::ceil<std::chrono::milliseconds>(std::max<Nanoseconds>(next - Clock::now(), 0ns));
    return static_cast<int>(std::min<std::chrono::milliseconds::rep>(left.count(), 3'600'000));
}

}
