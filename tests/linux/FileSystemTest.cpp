#include "linux/files/OpenForReading.h"
#include "linux/files/PosixFileSystem.h"
#include "support/TemporaryFolder.h"
#include "support/Test.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>

namespace Quillory {
namespace {

// What reading and installing sheets does not show: those tests stand on the machine's own files as well.
class PosixFileSystemTest : public Test {
protected:
    PosixFileSystem const files;
    TemporaryFolder const root;
    std::unique_ptr<OpenFolder> const folder = files.openFolder(root.path()).value();
    std::unique_ptr<InstallFolder> const target = files.openForInstalling(root.path()).value();
};

TEST_F(PosixFileSystemTest, A_listing_gives_every_entry_of_now_but_the_hidden_ones)
{
    QByteArray const noText("no\xff.md");
    for (QByteArray const& name : { QByteArray("b.md"), QByteArray("B.MD"), QByteArray(".hidden.md"), noText })
        root.write(name, "");
    root.makeFolder("folder.md");
    for (int repeat = 0; repeat < 2; ++repeat)
        EXPECT_THAT(folder->names().value(), UnorderedElementsAre("b.md", "B.MD", noText, "folder.md"));
    root.remove("B.MD");
    EXPECT_THAT(folder->names().value(), UnorderedElementsAre("b.md", noText, "folder.md"));
    EXPECT_EQ(folder->read(noText, 10).value(), QByteArray(""));
    root.remove({});
    EXPECT_EQ(folder->names().error(), SystemError(ENOENT));
}

TEST_F(PosixFileSystemTest, A_read_gives_at_most_its_limit_and_also_a_file_whose_size_nobody_knows)
{
    for (qint64 size : { 0, 1, 99, 100, 101, 4096, 5000, 2097152, 2097153 }) {
        QByteArray contents(size, 'x');
        for (qsizetype at = 0; at < size; at += 97)
            contents[at] = static_cast<char>(at % 251);
        root.write("x.md", contents);
        EXPECT_EQ(folder->status("x.md").value().size, size);
        for (qint64 limit : { qint64 { 0 }, qint64 { 1 }, qint64 { 100 }, size, size + 1, qint64 { 2097153 } })
            EXPECT_EQ(folder->read("x.md", limit).value(), contents.first(std::min(size, limit))) << limit;
    }
    auto const process = files.openFolder(u"/proc/self"_s).value();
    EXPECT_EQ(process->status("status").value().size, 0);
    EXPECT_GT(process->read("status", 1 << 20).value().value().size(), 100);
}

TEST_F(PosixFileSystemTest, Only_regular_files_are_read_and_nothing_blocks)
{
    root.write("file", "");
    root.makeFolder("folder");
    root.link("link", "file");
    root.makeFifo("fifo");
    ASSERT_EQ(mknod(root.at("socket").constData(), S_IFSOCK | 0600, 0), 0);
    for (auto const* name : { "file", "folder", "link", "fifo", "socket" }) {
        auto const is = [name](std::string_view other) { return name == other; };
        EXPECT_EQ(folder->status(name).value().isRegularFile, is("file")) << name;
        EXPECT_EQ(folder->status(name).value().isSymbolicLink, is("link")) << name;
        EXPECT_EQ(folder->read(name, 100).value_or(std::nullopt).has_value(), is("file")) << name;
    }
    EXPECT_EQ(folder->read("link", 100).error(), SystemError(ELOOP));
}

// The file system through which the portal shows a folder answers every such call as if it met a link.
TEST_F(PosixFileSystemTest, A_file_system_that_takes_files_for_links_is_read_and_its_links_are_not)
{
    root.write("file", "text");
    root.link("link", "file");
    root.makeFifo("fifo");
    auto const ofPortal = [](int at, char const* path, int flags) {
        if ((flags & O_NOFOLLOW) == 0 || (flags & O_PATH) != 0)
            return openat(at, path, flags);
        errno = ELOOP;
        return -1;
    };
    FileDescriptor const place(open(root.at().constData(), O_PATH));
    EXPECT_TRUE(openForReading(place.number(), "file", ofPortal));
    for (auto const& [name, error] : { std::pair("link", ELOOP), { "fifo", ELOOP }, { "gone", ENOENT } })
        EXPECT_EQ(openForReading(place.number(), name, ofPortal).error(), SystemError(error)) << name;
}

TEST_F(PosixFileSystemTest, A_real_path_follows_every_link_and_may_lead_outside)
{
    root.write("pics/a b.png", "picture");
    root.link("to-folder", "pics");
    root.link("to-nothing", "gone");
    root.link("loop", "loop");
    root.link("to-outside", "/usr");
    EXPECT_EQ(folder->realPath("to-folder/../pics//a b.png"), root.at("pics/a b.png"));
    EXPECT_EQ(folder->realPath("."), root.at());
    EXPECT_EQ(folder->realPath("to-outside"), QByteArray("/usr"));
    for (auto const& [way, error] : { std::pair<QByteArray, int> { "to-nothing", ENOENT }, { "loop", ELOOP },
             { "gone/../pics", ENOENT }, { "", EINVAL }, { root.at(), EINVAL }, { QByteArray("pics\0x", 6), EINVAL } })
        EXPECT_EQ(folder->realPath(way).error(), SystemError(error)) << way.toStdString();
}

TEST_F(PosixFileSystemTest, A_file_below_is_opened_past_no_link_and_read_from_the_start_each_time)
{
    root.write("pics/a.png", "picture");
    root.write("top.png", "top");
    root.link("to-folder", "pics");
    root.link("to-file.png", "top.png");
    for (auto const* way : { "to-folder/a.png", "to-file.png", "gone.png", "gone/a.png", "top.png/a.png", "pics/", "",
             "/etc/passwd", "../top.png", "pics/../top.png", "./top.png", "pics//a.png" })
        EXPECT_FALSE(folder->open(way)) << way;
    EXPECT_FALSE(folder->open("pics").value()->status()->isRegularFile);
    auto const file = folder->open("pics/a.png").value();
    EXPECT_EQ(file->status()->size, 7);
    EXPECT_EQ(file->read(4), QByteArray("pict"));
    EXPECT_EQ(file->read(100), QByteArray("picture"));
    root.remove("pics/a.png");
    EXPECT_EQ(file->realPath().error(), SystemError(ENOENT));
}

TEST_F(PosixFileSystemTest, What_is_open_stays_that_when_its_path_changes)
{
    root.write("in/x.png (deleted)", "x");
    auto const inner = files.openFolder(root.path("in")).value();
    auto const file = inner->open("x.png (deleted)").value();
    auto const installing = files.openForInstalling(root.path("in")).value();
    root.rename("in", "out");
    root.write("in/x.png (deleted)", "another");
    EXPECT_EQ(inner->realPath(), root.at("out"));
    EXPECT_EQ(file->realPath(), root.at("out/x.png (deleted)"));
    EXPECT_EQ(inner->read("x.png (deleted)", 100).value(), QByteArray("x"));
    EXPECT_TRUE(installing->createFile("y"));
    EXPECT_TRUE(root.has("out/y") && !root.has("in/y"));
}

TEST_F(PosixFileSystemTest, A_file_is_made_for_others_to_read_and_linked_and_its_first_name_removed)
{
    auto const mask = umask(0);
    auto file = target->createFile(".new").value();
    umask(mask);
    EXPECT_TRUE(file->write("first, "));
    EXPECT_TRUE(file->write(QByteArray(100'000, 'x')));
    EXPECT_TRUE(file->close());
    EXPECT_TRUE(target->publish(".new", "sheet.md"));
    EXPECT_THAT(files.everyName(root.path()).value(), UnorderedElementsAre(".new", "sheet.md"));
    EXPECT_TRUE(target->remove(".new"));
    EXPECT_EQ(target->remove(".new").error(), SystemError(ENOENT));
    EXPECT_EQ(target->publish(".new", "other.md").error(), SystemError(ENOENT));
    EXPECT_EQ(root.read("sheet.md"), "first, " + QByteArray(100'000, 'x'));
    struct stat status {};
    ASSERT_EQ(stat(root.at("sheet.md").constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0644U);
}

TEST_F(PosixFileSystemTest, No_operation_takes_a_name_that_is_there_or_leads_out_of_the_folder)
{
    root.write("file", "old");
    root.link("link", "nowhere");
    root.makeFolder("folder");
    for (auto const* name : { "file", "link", "folder" }) {
        EXPECT_EQ(target->createFile(name).error(), SystemError(EEXIST)) << name;
        EXPECT_EQ(target->makeFolder(name).error(), SystemError(EEXIST)) << name;
        EXPECT_EQ(target->isFolder(name).value(), name == std::string_view("folder")) << name;
    }
    EXPECT_EQ(target->isFolder("missing").error(), SystemError(ENOENT));
    for (auto const* name : { "file", "link" })
        EXPECT_EQ(files.openForInstalling(root.path(name)).error(), SystemError(ENOTDIR)) << name;
    SystemError const invalid(EINVAL);
    for (auto const* name : { "", ".", "..", "../x", "/tmp/x", "a/b" }) {
        std::array const errors { folder->read(name, 10).error(), folder->status(name).error(),
            target->createFile(name).error(), target->makeFolder(name).error(), target->isFolder(name).error(),
            target->publish(name, "y").error(), target->publish("file", name).error(), target->remove(name).error() };
        EXPECT_THAT(errors, Each(invalid)) << name;
    }
    EXPECT_EQ(folder->read(QByteArray("file\0y", 6), 10).error(), invalid);
    EXPECT_EQ(files.openForInstalling(root.path("missing")).error(), SystemError(ENOENT));
    EXPECT_EQ(files.everyName(root.path("missing")).error(), SystemError(ENOENT));
}

}
}
