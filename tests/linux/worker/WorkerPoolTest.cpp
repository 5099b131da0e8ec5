#include "linux/worker/WorkerPool.h"

#include "linux/worker/Confinement.h"
#include "support/Test.h"

#include <array>
#include <cerrno>
#include <future>
#include <thread>

#include <sys/wait.h>

namespace Quillory {
namespace {

constexpr auto tookTooLong = "(took too long)";
constexpr auto crashed = "(crashed)";
constexpr auto unavailable = "(unavailable)";

SandboxValue adopted(SealedBytes const& bytes)
{
    std::string const text(reinterpret_cast<char const*>(bytes.bytes().data()), bytes.bytes().size());
    return text == "unlike" ? nullptr : std::make_shared<std::string const>(text);
}

SandboxRequest request(QByteArray bytes)
{
    return { 1, 2, std::move(bytes), adopted };
}

std::string answerOf(std::shared_ptr<SandboxJob> const& job)
{
    std::promise<void> finished;
    job->whenFinished([&] { finished.set_value(); });
    finished.get_future().wait();
    auto const answer = *job->answer();
    if (answer)
        return *std::static_pointer_cast<std::string const>(*answer);
    return std::array { tookTooLong, crashed, unavailable }.at(static_cast<std::size_t>(answer.error()));
}

WorkerSettings faulty()
{
    return { .program = QUILLORY_FAULTY_WORKER,
        .most = 2,
        .idleTime = 50ms,
        .baseAllowance = isSanitized ? 3s : 300ms,
        .patience = 3,
        .slice = 30ms };
}

// Neither a worker nor what one leaves in the system's table.
void untilNoChildIsLeft()
{
    siginfo_t state {};
    while (waitid(P_ALL, 0, &state, WEXITED | WNOHANG | WNOWAIT) == 0)
        std::this_thread::sleep_for(1ms); // between two looks
    ASSERT_EQ(errno, ECHILD);
}

TEST(WorkerPool, What_a_worker_does_costs_its_own_item_and_no_other)
{
    std::vector<std::pair<QByteArray, std::string>> const cases {
        { "", "" }, { "word", "word" }, { "crash", crashed }, { "unlike", crashed }, // is adopted by nobody
        { "chatter", crashed }, { "keep", crashed }, { "endless", crashed }, { "spin", tookTooLong },
        { "hang", tookTooLong },
        { QByteArray(300'000, 'x'), std::string(300'000, 'x') }, // too long to be sent with others, and to be copied
    };
    WorkerPool pool(faulty());
    std::vector<std::shared_ptr<SandboxJob>> jobs;
    for (auto const& [bytes, expected] : cases)
        jobs.push_back(pool.start(request(bytes)));
    for (int number = 0; number < 500; ++number)
        jobs.push_back(pool.start(request(QByteArray::number(number))));
    for (std::size_t index = 0; index < jobs.size(); ++index) {
        auto const expected = index < cases.size() ? cases[index].second : std::to_string(index - cases.size());
        EXPECT_EQ(answerOf(jobs[index]), expected) << index;
    }
    untilNoChildIsLeft();
    EXPECT_EQ(answerOf(pool.start(request("again"))), "again");
}

TEST(WorkerPool, Memory_has_an_end)
{
    WorkerPool pool({ .program = QUILLORY_FAULTY_WORKER, .baseAllowance = 1h });
    if constexpr (filtersSystemCalls) {
        EXPECT_EQ(answerOf(pool.start(request("hungry"))), crashed);
    }
    EXPECT_EQ(answerOf(pool.start(request("word"))), "word");
}

TEST(WorkerPool, A_worker_finds_every_door_closed)
{
    WorkerPool pool({ .program = QUILLORY_FAULTY_WORKER });
    EXPECT_EQ(answerOf(pool.start(request("doors"))), "doors");
}

TEST(WorkerPool, A_slow_job_makes_room_and_one_that_nobody_waits_for_ends)
{
    auto settings = faulty();
    settings.most = 1;
    settings.baseAllowance = 1h;
    WorkerPool pool(settings);
    auto slow = pool.start(request("spin"));
    for (auto const* word : { "one", "two" })
        EXPECT_EQ(answerOf(pool.start(request(word))), word);
    EXPECT_FALSE(slow->answer());
    slow.reset();
    untilNoChildIsLeft();
}

TEST(WorkerPool, The_end_of_the_pool_and_a_program_that_is_not_there_leave_nobody_waiting)
{
    std::shared_ptr<SandboxJob> job;
    {
        WorkerPool pool({ .program = QUILLORY_FAULTY_WORKER, .baseAllowance = 1h });
        job = pool.start(request("spin"));
        EXPECT_EQ(answerOf(pool.start(request("word"))), "word");
    }
    EXPECT_EQ(answerOf(job), unavailable);
    untilNoChildIsLeft();

    WorkerPool none({ .program = "/nonexistent" });
    EXPECT_EQ(answerOf(none.start(request("word"))), unavailable);
}

}
}
