#include "linux/qt/QtExecutor.h"
#include "support/EventLoop.h"
#include "support/ManualExecutor.h"
#include "support/Test.h"

#include <QEventLoop>

#include <array>
#include <atomic>
#include <latch>
#include <thread>

namespace Quillory {
namespace {

struct OnManualExecutor {
    std::optional<ManualExecutor> executor { std::in_place };

    bool runUntil(std::function<bool()> const& condition)
    {
        for (int turn = 0; turn < 1000; ++turn) {
            executor->settle();
            if (condition())
                return true;
            executor->advance(1ms);
        }
        return false;
    }
};

struct OnQtExecutor {
    EventLoop loop;
    std::optional<QtExecutor> executor { std::in_place };

    bool runUntil(std::function<bool()> const& condition) { return loop.runUntil(condition); }
};

template<typename Harness>
class ExecutorContract : public Test, public Harness {
protected:
    // Runs everything that is owed now: what is posted and handed over last comes last.
    void quiesce()
    {
        bool isQuiet = false;
        Registration post;
        auto const work = this->executor->detach(
            [] { return 0; }, [&](int) { post = this->executor->post([&] { isQuiet = true; }); });
        ASSERT_TRUE(this->runUntil([&] { return isQuiet; }));
    }

    std::vector<int> m_log;
};

using Executors = Types<OnManualExecutor, OnQtExecutor>;
TYPED_TEST_SUITE(ExecutorContract, Executors);

TYPED_TEST(ExecutorContract, Actions_run_later_in_order_of_deadline_and_arrival_and_never_early)
{
    auto const start = this->executor->now();
    std::vector<Registration> tasks;
    auto const never = this->executor->after(std::chrono::nanoseconds::max(), [this] { this->m_log.push_back(-1); });
    int number = 0;
    for (int delay : { 0, 0, -5, 0, 180, 90 }) {
        tasks.push_back(this->executor->after(std::chrono::milliseconds(delay), [this, start, delay, id = number++] {
            EXPECT_GE(this->executor->now() - start, std::chrono::milliseconds(delay));
            this->m_log.push_back(id);
        }));
    }
    EXPECT_THAT(this->m_log, IsEmpty());
    ASSERT_TRUE(this->runUntil([&] { return this->m_log.size() == tasks.size(); }));
    this->quiesce();
    EXPECT_THAT(this->m_log, ElementsAre(0, 1, 2, 3, 5, 4));
}

TYPED_TEST(ExecutorContract, The_end_of_a_task_cancels_it_and_lets_go_what_it_holds)
{
    auto const held = std::make_shared<int>(0);
    auto task = this->executor->after(0ns, [this, held] { this->m_log.push_back(1); });
    EXPECT_EQ(held.use_count(), 2);
    task.end();
    EXPECT_EQ(held.use_count(), 1);
    this->quiesce();
    EXPECT_THAT(this->m_log, IsEmpty());
}

TYPED_TEST(ExecutorContract, An_action_may_end_itself_and_others_and_start_more)
{
    Registration first, second, third;
    first = this->executor->post([&] {
        first.end();
        second.end();
        third = this->executor->post([&] { this->m_log.push_back(3); });
        this->m_log.push_back(1);
    });
    second = this->executor->post([&] { this->m_log.push_back(2); });
    ASSERT_TRUE(this->runUntil([&] { return this->m_log.size() >= 2; }));
    EXPECT_THAT(this->m_log, ElementsAre(1, 3));
}

TYPED_TEST(ExecutorContract, Work_that_is_cancelled_at_once_runs_and_its_result_is_dropped)
{
    std::atomic<bool> hasRun = false;
    auto task = this->executor->detach([&] { return hasRun = true; }, [this](bool) { this->m_log.push_back(1); });
    task.end();
    ASSERT_TRUE(this->runUntil([&] { return hasRun.load(); }));
    this->quiesce();
    EXPECT_THAT(this->m_log, IsEmpty());
}

TYPED_TEST(ExecutorContract, A_task_may_outlive_its_executor)
{
    auto timer = this->executor->after(0ns, [this] { this->m_log.push_back(1); });
    auto work = this->executor->detach([] { return 0; }, [this](int) { this->m_log.push_back(2); });
    this->executor.reset();
    timer.end();
    work.end();
    EXPECT_THAT(this->m_log, IsEmpty());
}

class QtExecutorTest : public Test, public OnQtExecutor { };

TEST_F(QtExecutorTest, Two_works_run_at_the_same_moment_and_not_on_the_main_thread)
{
    std::latch bothRun(2);
    std::vector<bool> wereOnMain;
    auto const isOnMain = [main = std::this_thread::get_id()] { return std::this_thread::get_id() == main; };
    auto const work = [&] {
        bothRun.arrive_and_wait();
        return std::make_unique<bool>(isOnMain());
    };
    auto const arrive = [&](std::unique_ptr<bool> wasOnMain) {
        EXPECT_TRUE(isOnMain());
        wereOnMain.push_back(*wasOnMain);
    };
    auto const first = executor->detach(work, arrive);
    auto const second = executor->detach(work, arrive);
    ASSERT_TRUE(runUntil([&] { return wereOnMain.size() == 2; }));
    EXPECT_THAT(wereOnMain, Each(false));
}

TEST_F(QtExecutorTest, The_end_waits_for_work_that_runs_as_long_as_wished_and_delivers_nothing)
{
    std::latch begun(1), mayEnd(1);
    std::atomic<bool> hasEnded = false;
    auto const task = executor->detach(
        [&] {
            begun.count_down();
            mayEnd.wait();
            return hasEnded = true;
        },
        [](bool) { ADD_FAILURE() << "nobody is there any more"; });
    begun.wait();
    EXPECT_FALSE(executor->stopWorkers(1ms));
    mayEnd.count_down();
    EXPECT_TRUE(executor->stopWorkers(1min));
    executor.reset();
    EXPECT_TRUE(hasEnded);
}

TEST_F(QtExecutorTest, Cancelled_results_and_discarded_values_are_destroyed_on_a_worker)
{
    struct Trace {
        std::atomic<std::thread::id>* destroyedOn;
        ~Trace() { *destroyedOn = std::this_thread::get_id(); }
    };
    std::array<std::atomic<std::thread::id>, 3> destroyedOn;
    executor->discard(std::make_unique<Trace>(&destroyedOn[0]));
    auto const deliver = [](auto const&) { ADD_FAILURE() << "it was cancelled"; };
    auto inTime = executor->detach([&] { return std::make_unique<Trace>(&destroyedOn[1]); }, deliver);
    inTime.end();
    std::latch hasRun(1);
    auto onTheWay = executor->detach(
        [&] {
            auto result = std::make_unique<Trace>(&destroyedOn[2]);
            hasRun.count_down();
            return result;
        },
        deliver);
    hasRun.wait();
    onTheWay.end();
    for (auto const& thread : destroyedOn) {
        ASSERT_TRUE(runUntil([&] { return thread.load() != std::thread::id(); }));
        EXPECT_NE(thread.load(), std::this_thread::get_id());
    }
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
    auto const outer = executor->post([&] {
        timer = executor->after(1ms, count);
        post = executor->post(count);
        work = executor->detach([] { return 0; }, [&](int) { count(); });
        inner.exec();
        isDone = true;
    });
    ASSERT_TRUE(runUntil([&] { return isDone; }));
    EXPECT_EQ(arrived, 3);
}

TEST_F(QtExecutorTest, A_storm_of_work_from_which_half_is_cancelled_arrives_whole)
{
    constexpr int count = 2000;
    int arrived = 0;
    std::vector<Registration> tasks;
    for (int number = 0; number < count; ++number) {
        tasks.push_back(
            executor->detach([] { return std::make_shared<int>(1); }, [&](auto const& one) { arrived += *one; }));
        if (number % 2)
            tasks.back().end();
    }
    EXPECT_TRUE(runUntil([&] { return arrived == count / 2; }));
}

}
}
