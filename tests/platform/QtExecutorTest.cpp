#include "platform/linux/qt/QtExecutor.h"
#include "support/EventLoop.h"
#include "support/Test.h"

#include <QEventLoop>

#include <atomic>
#include <latch>
#include <memory>
#include <optional>
#include <thread>
#include <vector>

namespace Quillory {
namespace {

class QtExecutorTest : public Test {
protected:
    EventLoop m_loop;
    std::optional<QtExecutor> m_executor { std::in_place };
};

TEST_F(QtExecutorTest, Two_works_run_at_the_same_moment_and_not_on_the_main_thread)
{
    std::latch bothRun(2);
    std::atomic<int> onMainThread = 0;
    int arrived = 0;
    auto const work = [&, main = std::this_thread::get_id()] {
        onMainThread += std::this_thread::get_id() == main ? 1 : 0;
        bothRun.arrive_and_wait();
        return 1;
    };
    auto const first = m_executor->detach(work, [&](int one) { arrived += one; });
    auto const second = m_executor->detach(work, [&](int one) { arrived += one; });
    ASSERT_TRUE(m_loop.runUntil([&] { return arrived == 2; }));
    EXPECT_EQ(onMainThread, 0);
}

TEST_F(QtExecutorTest, The_end_waits_for_work_that_runs_as_long_as_wished_and_delivers_nothing)
{
    std::atomic<bool> hasBegun = false, mayEnd = false, hasEnded = false, wasDelivered = false;
    auto const task = m_executor->detach(
        [&] {
            hasBegun = true;
            hasBegun.notify_one();
            mayEnd.wait(false);
            hasEnded = true;
            return 0;
        },
        [&](int) { wasDelivered = true; });
    hasBegun.wait(false);
    EXPECT_FALSE(m_executor->stopWorkers(1ms));
    std::thread releaser([&] {
        mayEnd = true;
        mayEnd.notify_one();
    });
    EXPECT_TRUE(m_executor->stopWorkers(1min));
    m_executor.reset();
    releaser.join();
    EXPECT_TRUE(hasEnded);
    EXPECT_FALSE(wasDelivered);
}

TEST_F(QtExecutorTest, Cancelled_results_and_discarded_values_are_destroyed_on_a_worker)
{
    struct Trace {
        std::atomic<std::thread::id>* destroyedOn;
        ~Trace() { *destroyedOn = std::this_thread::get_id(); }
    };
    std::atomic<std::thread::id> discarded, cancelledInTime, cancelledOnTheWay;
    auto const isSet = [](std::atomic<std::thread::id> const& id) { return id.load() != std::thread::id(); };

    m_executor->discard(std::make_unique<Trace>(&discarded));
    auto early = m_executor->detach([&] { return std::make_unique<Trace>(&cancelledInTime); }, [](auto const&) {});
    early.end();
    std::atomic<bool> hasRun = false;
    auto late = m_executor->detach(
        [&] {
            auto result = std::make_unique<Trace>(&cancelledOnTheWay);
            hasRun = true;
            hasRun.notify_one();
            return result;
        },
        [](auto const&) {});
    hasRun.wait(false);
    late.end();

    ASSERT_TRUE(
        m_loop.runUntil([&] { return isSet(discarded) && isSet(cancelledInTime) && isSet(cancelledOnTheWay); }));
    for (auto const* id : { &discarded, &cancelledInTime, &cancelledOnTheWay })
        EXPECT_NE(id->load(), std::this_thread::get_id());
}

TEST_F(QtExecutorTest, Timers_posts_and_results_go_on_in_a_loop_that_an_action_runs)
{
    QEventLoop inner;
    int arrived = 0;
    auto const count = [&] {
        if (++arrived == 3)
            inner.quit();
    };
    Registration timer, post, work;
    bool isDone = false;
    auto const outer = m_executor->post([&] {
        timer = m_executor->after(1ms, count);
        post = m_executor->post(count);
        work = m_executor->detach([] { return 0; }, [&](int) { count(); });
        inner.exec();
        isDone = true;
    });
    ASSERT_TRUE(m_loop.runUntil([&] { return isDone; }));
    EXPECT_EQ(arrived, 3);
}

TEST_F(QtExecutorTest, A_storm_of_work_from_which_half_is_cancelled_arrives_whole)
{
    constexpr int count = 2000;
    int arrived = 0;
    std::vector<Registration> tasks;
    for (int number = 0; number < count; ++number) {
        tasks.push_back(
            m_executor->detach([] { return std::make_shared<int>(1); }, [&](auto const& one) { arrived += *one; }));
        if (number % 2)
            tasks.back().end();
    }
    EXPECT_TRUE(m_loop.runUntil([&] { return arrived == count / 2; }));
}

}
}
