#include "support/ManualExecutor.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace Quillory {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

class ManualExecutorTest : public testing::Test {
protected:
    Registration detach(std::string const& name)
    {
        return m_executor.detach(
            [this, name] {
                m_log.push_back(name + " ran");
                return name;
            },
            [this](std::string const& result) { m_log.push_back(result + " arrived"); });
    }

    ManualExecutor m_executor;
    std::vector<std::string> m_log;
};

TEST_F(ManualExecutorTest, Two_workers_run_and_the_later_one_arrives_first)
{
    auto const a = detach("a");
    auto const b = detach("b");
    EXPECT_TRUE(m_executor.runWork());
    EXPECT_TRUE(m_executor.runWork());
    EXPECT_FALSE(m_executor.runWork());
    EXPECT_TRUE(m_executor.finishWork(1));
    EXPECT_TRUE(m_executor.finishWork());
    EXPECT_FALSE(m_executor.finishWork());
    EXPECT_THAT(m_log, ElementsAre("a ran", "b ran", "b arrived", "a arrived"));
}

TEST_F(ManualExecutorTest, A_task_that_ends_between_run_and_delivery_says_that_its_result_was_dropped)
{
    auto a = detach("a");
    m_executor.runWork();
    a.end();
    auto const b = detach("b");
    EXPECT_TRUE(m_executor.runAndFinishWork());
    EXPECT_FALSE(m_executor.finishWork());
    EXPECT_THAT(m_log, ElementsAre("a ran", "b ran", "b arrived"));
}

TEST_F(ManualExecutorTest, The_clock_stands_at_the_deadline_while_a_timer_runs)
{
    auto const start = m_executor.now();
    std::vector<std::chrono::nanoseconds> times;
    Registration chained;
    auto const first = m_executor.after(150ms, [&] {
        times.push_back(m_executor.now() - start);
        chained = m_executor.after(150ms, [&] { times.push_back(m_executor.now() - start); });
    });
    m_executor.advance(299ms);
    EXPECT_THAT(times, ElementsAre(150ms));
    m_executor.advance(1ms);
    EXPECT_THAT(times, ElementsAre(150ms, 300ms));
    EXPECT_EQ(m_executor.pendingTimers(), 0U);
}

}
}
