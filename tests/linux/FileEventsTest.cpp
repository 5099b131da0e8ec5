#include "linux/files/InotifyFileEvents.h"
#include "linux/qt/QtExecutor.h"
#include "support/EventLoop.h"
#include "support/TemporaryFolder.h"
#include "support/Test.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace Quillory {
namespace {

class InotifyFileEventsTest : public Test {
protected:
    InotifyFileEventsTest()
    {
        root.makeFolder("library");
        root.makeFolder("other");
    }

    Registration watch(QString const& folder, int& calls, std::chrono::milliseconds latency = 1ms)
    {
        return events.watch(folder, latency, [&calls] { ++calls; });
    }
    bool runUntil(std::function<bool()> const& condition) { return loop.runUntil(condition); }
    void shell(char const* script)
    {
        // Not QProcess: after its kind of fork the thread sanitizer is blind to this thread's locks.
        auto const command = "set -e; cd '" + root.at() + "'; " + script;
        ASSERT_EQ(std::system(command.constData()), 0) << script;
    }
    // A watch that starts now tells of what each script does.
    void tells(QString const& folder, std::initializer_list<char const*> scripts)
    {
        int calls = 0;
        auto const registration = watch(folder, calls);
        for (auto const* script : scripts) {
            auto const before = calls;
            shell(script);
            ASSERT_TRUE(runUntil([&] { return calls > before; })) << script;
        }
    }

    EventLoop loop;
    TemporaryFolder const root;
    QtExecutor executor;
    InotifyFileEvents events { executor };
    QString const path = root.path("library");
    QString const otherPath = root.path("other");
};

TEST_F(InotifyFileEventsTest, Calls_are_a_latency_apart_however_many_changes_come)
{
    std::vector<std::chrono::nanoseconds> times;
    auto const registration = events.watch(path, 20ms, [&] { times.push_back(executor.now()); });
    Registration next;
    std::function<void()> const changeOn = [&] {
        root.write("library/x.md", "");
        next = executor.after(1ms, changeOn);
    };
    changeOn();
    ASSERT_TRUE(runUntil([&] { return times.size() >= 4; }));
    for (std::size_t call = 1; call < times.size(); ++call)
        EXPECT_GE(times[call] - times[call - 1], 20ms);
}

TEST_F(InotifyFileEventsTest, Watches_hear_of_their_own_folder_until_they_end)
{
    int first = 0, second = 0, other = 0;
    auto ended = watch(path, first, 20ms);
    auto const living = watch(path, second, 20ms);
    auto const elsewhere = watch(otherPath, other, 20ms);
    root.write("library/x.md", "");
    ASSERT_TRUE(runUntil([&] { return first == 1 && second == 1; }));
    ended.end();
    root.write("library/x.md", "");
    root.write("other/x.md", "");
    ASSERT_TRUE(runUntil([&] { return second == 2 && other == 1; }));
    EXPECT_EQ(first, 1);
}

TEST_F(InotifyFileEventsTest, A_call_may_end_its_watch_and_another_whose_call_is_due_and_begin_one)
{
    int calls = 0, due = 0, later = 0;
    auto other = watch(path, due, 20ms);
    Registration next;
    Registration registration = events.watch(path, 1ms, [&] {
        registration.end();
        other.end();
        next = watch(path, later);
        ++calls;
    });
    root.write("library/x.md", "");
    ASSERT_TRUE(runUntil([&] { return calls == 1; }));
    root.write("library/x.md", "");
    ASSERT_TRUE(runUntil([&] { return later == 1; }));
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(due, 0);
}

TEST_F(InotifyFileEventsTest, Whatever_becomes_of_an_entry_is_told)
{
    root.write("library/x.md", "a\n");
    for (auto const* script : { ": > library/new.md", "echo f > other/y.md && mv other/y.md library/y.md",
             "mv library/y.md other/y.md", "ln -s ../other/y.md library/link.md", "chmod 600 library/x.md",
             "rm library/x.md", "mkdir library/folder", "mv library moved" })
        tells(path, { script });
}

TEST_F(InotifyFileEventsTest, The_path_is_followed_when_its_folder_goes_and_another_comes)
{
    // As the program does while the folder is connected: a folder that is held open tells nothing of its removal.
    int const scope = open(root.at("library").constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    tells(path,
        { "rmdir library", "mkdir library", ": > library/x.md", "mv library old", "mkdir new; mv new library",
            ": > library/y.md", "rm -r library" });
    close(scope);
}

TEST_F(InotifyFileEventsTest, A_folder_that_went_with_its_parent_is_found_again)
{
    root.makeFolder("up/library");
    Registration looking; // as after each load
    std::function<void()> const look = [&] {
        events.lookAgain();
        looking = executor.after(1ms, look);
    };
    look();
    tells(root.path("up/library"), { "mv up away", "mkdir -p up/library", ": > up/library/x.md", "rm -r up" });
}

TEST_F(InotifyFileEventsTest, Reading_is_no_change_and_what_was_moved_away_is_not_listened_to)
{
    root.write("library/x.md", "a\n");
    int calls = 0, other = 0;
    auto const registration = watch(path, calls);
    auto const marker = watch(otherPath, other);
    auto const callsOf = [&](char const* script) {
        auto const before = std::pair(calls, other);
        shell(script);
        root.write("other/marker.md", "");
        EXPECT_TRUE(runUntil([&] { return other > before.second; }));
        return calls - before.first;
    };
    EXPECT_EQ(callsOf("cat library/*; ls -l library"), 0);
    shell("mv library moved; mkdir library");
    ASSERT_TRUE(runUntil([&] { return calls > 0; }));
    callsOf("");
    EXPECT_EQ(callsOf(": > moved/x.md"), 0);
}

TEST_F(InotifyFileEventsTest, Without_a_folder_or_the_systems_help_a_watch_is_inactive_and_may_be_had_later)
{
    rlimit limit {};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &limit), 0);
    rlimit const none { 0, limit.rlim_max };
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
    auto const refused = events.watch(path, 1ms, [] { });
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &limit), 0);
    EXPECT_FALSE(refused.isActive());
    tells(path, { ": > library/x.md" });
    EXPECT_FALSE(events.watch(root.path("missing"), 1ms, [] { }).isActive());
    root.write("file", "");
    EXPECT_FALSE(events.watch(root.path("file"), 1ms, [] { }).isActive());
}

TEST_F(InotifyFileEventsTest, After_an_overflow_the_folder_at_the_path_is_the_one_that_is_heard)
{
    int capacity = 0;
    ASSERT_TRUE(std::ifstream("/proc/sys/fs/inotify/max_queued_events") >> capacity && capacity > 0);
    int calls = 0;
    auto const registration = watch(path, calls);
    root.write("library/even.md", "");
    for (int event = 0; event <= capacity; event += 2) {
        root.rename("library/even.md", "library/odd.md");
        root.rename("library/odd.md", "library/even.md");
    }
    shell("mv library old; mkdir library");
    ASSERT_TRUE(runUntil([&] { return calls > 0; }));
    auto const before = calls;
    root.write("library/x.md", "");
    EXPECT_TRUE(runUntil([&] { return calls > before; }));
}

TEST_F(InotifyFileEventsTest, All_watches_share_one_instance_and_give_theirs_back)
{
    auto const instances = [] {
        return std::ranges::count_if(std::filesystem::directory_iterator("/proc/self/fd"), [](auto const& descriptor) {
            std::error_code ended; // as the one of the iterator itself has
            return std::filesystem::read_symlink(descriptor, ended).native().contains("inotify");
        });
    };
    auto const before = instances();
    Registration outliving;
    {
        InotifyFileEvents own(executor);
        outliving = own.watch(path, 1ms, [] { });
        auto const second = own.watch(otherPath, 1ms, [] { });
        EXPECT_EQ(instances(), before + 1);
    }
    outliving.end();
    EXPECT_TRUE(runUntil([&] { return instances() == before; })); // a worker closes it
}

}
}
