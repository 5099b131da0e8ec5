#include "linux/files/InotifyFileEvents.h"
#include "linux/qt/QtExecutor.h"
#include "support/EventLoop.h"
#include "support/TemporaryFolder.h"
#include "support/Test.h"

#include <QDir>

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

    Registration watch(QString const& folder, int& calls)
    {
        return events.watch(folder, 20ms, [&calls] { ++calls; });
    }
    void change(QString const& folder)
    {
        QFile file(folder + u"/%1.md"_s.arg(++changes));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("x");
    }
    bool runUntil(std::function<bool()> const& condition) { return loop.runUntil(condition); }
    void shell(char const* script)
    {
        // Not QProcess: after its kind of fork the thread sanitizer is blind to this thread's locks.
        auto const command = "set -e; cd '" + root.at() + "'; " + script;
        ASSERT_EQ(std::system(command.constData()), 0) << script;
    }
    // Whether a watch that starts now tells of what the script does.
    bool isTold(char const* script)
    {
        int calls = 0;
        auto const registration = events.watch(path, 1ms, [&] { ++calls; });
        shell(script);
        return runUntil([&] { return calls > 0; });
    }

    EventLoop loop;
    TemporaryFolder const root;
    QtExecutor executor;
    InotifyFileEvents events { executor };
    QString const path = root.path("library");
    QString const otherPath = root.path("other");
    int changes = 0;
};

TEST_F(InotifyFileEventsTest, Calls_are_a_latency_apart_however_many_changes_come)
{
    std::vector<std::chrono::nanoseconds> times;
    auto const registration = events.watch(path, 20ms, [&] { times.push_back(executor.now()); });
    Registration next;
    std::function<void()> const changeOn = [&] {
        change(path);
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
    auto ended = watch(path, first);
    auto const living = watch(path, second);
    auto const elsewhere = watch(otherPath, other);
    change(path);
    ASSERT_TRUE(runUntil([&] { return first == 1 && second == 1; }));
    ended.end();
    change(path);
    change(otherPath);
    ASSERT_TRUE(runUntil([&] { return second == 2 && other == 1; }));
    EXPECT_EQ(first, 1);
}

TEST_F(InotifyFileEventsTest, A_call_may_end_its_watch_and_another_whose_call_is_due_and_begin_one)
{
    int calls = 0, due = 0, later = 0;
    auto other = watch(path, due);
    Registration next;
    Registration registration = events.watch(path, 1ms, [&] {
        registration.end();
        other.end();
        next = watch(path, later);
        ++calls;
    });
    change(path);
    ASSERT_TRUE(runUntil([&] { return calls == 1; }));
    change(path);
    ASSERT_TRUE(runUntil([&] { return later == 1; }));
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(due, 0);
}

TEST_F(InotifyFileEventsTest, Whatever_becomes_of_an_entry_is_told)
{
    shell("echo a > library/x.md");
    for (auto const* script : { ": > library/new.md", "echo f > other/y.md && mv other/y.md library/y.md",
             "mv library/y.md other/y.md", "ln -s ../other/y.md library/link.md", "chmod 600 library/x.md",
             "rm library/x.md", "mkdir library/folder", "mv library moved" })
        EXPECT_TRUE(isTold(script)) << script;
}

TEST_F(InotifyFileEventsTest, The_path_is_followed_when_its_folder_goes_and_another_comes)
{
    // As the program does while the folder is connected: a folder that is held open tells nothing of its removal.
    int const scope = open(QFile::encodeName(path).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    int calls = 0;
    auto const registration = events.watch(path, 1ms, [&] { ++calls; });
    for (auto const* script : { "rmdir library", "mkdir library", ": > library/x.md", "mv library old",
             "mkdir new; mv new library", ": > library/y.md", "rm -r library" }) {
        auto const before = calls;
        shell(script);
        if (!runUntil([&] { return calls > before; })) {
            ADD_FAILURE() << "not told of: " << script;
            break;
        }
    }
    close(scope);
}

TEST_F(InotifyFileEventsTest, A_folder_that_went_with_its_parent_is_found_again)
{
    shell("mkdir -p up/library");
    int calls = 0;
    auto const registration = events.watch(root.path("up/library"), 1ms, [&] { ++calls; });
    for (auto const* script : { "mv up away", "mkdir -p up/library", ": > up/library/x.md", "rm -r up" }) {
        auto const before = calls;
        shell(script);
        events.lookAgain(); // as after each load
        ASSERT_TRUE(runUntil([&] { return calls > before; })) << "not told of: " << script;
    }
}

TEST_F(InotifyFileEventsTest, The_folder_that_was_moved_away_is_not_listened_to_any_more)
{
    int calls = 0, other = 0;
    auto const registration = events.watch(path, 1ms, [&] { ++calls; });
    auto const marker = events.watch(otherPath, 1ms, [&] { ++other; });
    shell("mv library moved; mkdir library");
    ASSERT_TRUE(runUntil([&] { return calls > 0; }));
    shell("true > other/settle.md");
    ASSERT_TRUE(runUntil([&] { return other > 0; }));
    auto const before = calls;
    shell("true > moved/x.md; true > other/x.md");
    auto const otherBefore = other;
    ASSERT_TRUE(runUntil([&] { return other > otherBefore; }));
    EXPECT_EQ(calls, before);
}

TEST_F(InotifyFileEventsTest, Reading_the_folder_is_no_change)
{
    shell("echo a > library/x.md");
    int calls = 0, other = 0;
    auto const registration = events.watch(path, 1ms, [&] { ++calls; });
    auto const marker = events.watch(otherPath, 1ms, [&] { ++other; });
    shell("(cat library/*; ls -l library) >other/listing");
    ASSERT_TRUE(runUntil([&] { return other > 0; }));
    EXPECT_EQ(calls, 0);
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
    EXPECT_TRUE(isTold(": > library/x.md"));
    EXPECT_FALSE(events.watch(root.path("missing"), 1ms, [] { }).isActive());
    root.write("file", "");
    EXPECT_FALSE(events.watch(root.path("file"), 1ms, [] { }).isActive());
}

TEST_F(InotifyFileEventsTest, After_an_overflow_the_folder_at_the_path_is_the_one_that_is_heard)
{
    int capacity = 0;
    ASSERT_TRUE(std::ifstream("/proc/sys/fs/inotify/max_queued_events") >> capacity && capacity > 0);
    int calls = 0;
    auto const registration = events.watch(path, 1ms, [&] { ++calls; });
    root.write("library/even.md", "");
    for (int event = 0; event <= capacity; event += 2) {
        root.rename("library/even.md", "library/odd.md");
        root.rename("library/odd.md", "library/even.md");
    }
    shell("mv library old; mkdir library");
    ASSERT_TRUE(runUntil([&] { return calls > 0; }));
    auto const before = calls;
    shell("echo a > library/x.md");
    EXPECT_TRUE(runUntil([&] { return calls > before; }));
}

TEST_F(InotifyFileEventsTest, All_watches_share_one_instance_and_give_theirs_back)
{
    auto const instances = [] {
        int count = 0;
        QDir const descriptors(u"/proc/self/fd"_s);
        for (auto const& entry : descriptors.entryInfoList(QDir::System | QDir::Files | QDir::NoDotAndDotDot))
            count += QFile::symLinkTarget(entry.filePath()).contains(u"inotify"_s) ? 1 : 0;
        return count;
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
