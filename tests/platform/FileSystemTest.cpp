#include "platform/linux/files/PosixFileSystem.h"
#include "support/OrdinaryUser.h"
#include "support/TemporaryFolder.h"
#include "support/Test.h"

#include <cerrno>

#include <sys/stat.h>
#include <unistd.h>

namespace Quillory {
namespace {

class PosixFileSystemTest : public Test {
protected:
    std::unique_ptr<OpenFolder> open(QByteArray const& name = {}) const
    {
        return files.openFolder(root.path(name)).value();
    }

    PosixFileSystem const files;
    TemporaryFolder const root;
};

TEST_F(PosixFileSystemTest, A_listing_gives_every_entry_of_now_but_the_hidden_ones)
{
    QByteArray const noText("no\xff.md");
    for (QByteArray const& name : { QByteArray("b.md"), QByteArray("B.MD"), QByteArray(".hidden.md"), noText })
        root.write(name, "");
    root.makeFolder("folder.md");
    auto const folder = open();
    for (int repeat = 0; repeat < 2; ++repeat)
        EXPECT_THAT(folder->names().value(), UnorderedElementsAre("b.md", "B.MD", noText, "folder.md"));
    root.remove("B.MD");
    EXPECT_THAT(folder->names().value(), UnorderedElementsAre("b.md", noText, "folder.md"));
    EXPECT_EQ(folder->read(noText, 10).value(), QByteArray(""));
}

TEST_F(PosixFileSystemTest, A_missing_or_removed_folder_fails)
{
    EXPECT_EQ(files.openFolder(root.path("missing")).error(), SystemError(ENOENT));
    auto const folder = open();
    root.remove({});
    EXPECT_EQ(folder->names().error(), SystemError(ENOENT));
}

TEST_F(PosixFileSystemTest, Only_regular_files_are_read_and_nothing_blocks)
{
    root.write("file", "");
    root.makeFolder("folder");
    root.link("link", "file");
    root.makeFifo("fifo");
    ASSERT_EQ(mknod(root.at("socket").constData(), S_IFSOCK | 0600, 0), 0);
    auto const folder = open();
    for (auto const* name : { "file", "folder", "link", "fifo", "socket" }) {
        auto const is = [name](std::string_view other) { return name == other; };
        EXPECT_EQ(folder->status(name).value().isRegularFile, is("file")) << name;
        EXPECT_EQ(folder->status(name).value().isSymbolicLink, is("link")) << name;
        EXPECT_EQ(folder->read(name, 100).has_value(), !is("link")) << name;
        EXPECT_EQ(folder->read(name, 100).value_or(std::nullopt).has_value(), is("file")) << name;
    }
    EXPECT_EQ(folder->read("link", 100).error(), SystemError(ELOOP));
}

TEST_F(PosixFileSystemTest, A_read_gives_at_most_its_limit)
{
    for (qint64 size : { 0, 1, 99, 100, 101, 4096, 5000, 2097152, 2097153 }) {
        SCOPED_TRACE(size);
        QByteArray contents(size, 'x');
        for (qsizetype at = 0; at < size; at += 97)
            contents[at] = static_cast<char>(at % 251);
        root.write("x.md", contents);
        auto const folder = open();
        EXPECT_EQ(folder->status("x.md").value().size, size);
        for (qint64 limit : { qint64 { 0 }, qint64 { 1 }, qint64 { 100 }, size, size + 1, qint64 { 2097153 } })
            EXPECT_EQ(folder->read("x.md", limit).value(), contents.first(std::min(size, limit))) << limit;
    }
}

TEST_F(PosixFileSystemTest, What_happens_between_the_look_and_the_read_shows_in_the_read)
{
    root.write("grows.md", "a");
    root.write("turns.md", "a");
    root.write("vanishes.md", "a");
    auto const folder = open();
    for (auto const* name : { "grows.md", "turns.md", "vanishes.md" })
        EXPECT_TRUE(folder->status(name).value().isRegularFile);
    root.write("grows.md", QByteArray(100000, 'g'));
    root.remove("turns.md");
    root.makeFifo("turns.md");
    root.remove("vanishes.md");
    EXPECT_EQ(folder->read("grows.md", 50000).value(), QByteArray(50000, 'g'));
    EXPECT_EQ(folder->read("turns.md", 50000).value(), std::nullopt);
    EXPECT_EQ(folder->read("vanishes.md", 50000).error(), SystemError(ENOENT));
    EXPECT_EQ(folder->status("vanishes.md").error(), SystemError(ENOENT));
}

TEST_F(PosixFileSystemTest, A_file_without_permission_fails_when_it_is_read)
{
    root.write("closed.md", "closed");
    ASSERT_EQ(chmod(root.at("closed.md").constData(), 0), 0);
    OrdinaryUser const user;
    ASSERT_TRUE(user.holds());
    auto const folder = open();
    EXPECT_TRUE(folder->status("closed.md").value().isRegularFile);
    EXPECT_EQ(folder->read("closed.md", 10).error(), SystemError(EACCES));
}

TEST_F(PosixFileSystemTest, A_name_that_leads_out_of_the_folder_is_refused)
{
    root.write("x.md", "x");
    auto const folder = open();
    for (auto const& name : { QByteArray(""), QByteArray("."), QByteArray(".."), QByteArray("./x.md"),
             QByteArray("/etc/passwd"), QByteArray("x.md\0y", 6) }) {
        EXPECT_EQ(folder->read(name, 10).error(), SystemError(EINVAL)) << name.toStdString();
        EXPECT_EQ(folder->status(name).error(), SystemError(EINVAL)) << name.toStdString();
    }
}

TEST_F(PosixFileSystemTest, A_real_path_follows_every_link_and_may_lead_outside)
{
    root.makeFolder("pics");
    root.write("pics/a b.png", "picture");
    root.link("to-folder", "pics");
    root.link("to-file.png", "to-folder/a b.png");
    root.link("to-nothing", "gone");
    root.link("loop", "loop");
    root.link("to-outside", "/usr");
    auto const folder = open();
    auto const base = folder->realPath().value();
    EXPECT_TRUE(base.startsWith('/'));
    auto const up = "../" + base.mid(base.lastIndexOf('/') + 1);
    for (auto const& way : { QByteArray("pics/a b.png"), QByteArray("./pics//a b.png"), QByteArray("to-file.png"),
             QByteArray("to-folder/../pics/a b.png"), QByteArray("pics/../to-folder/a b.png"), up + "/to-file.png" })
        EXPECT_EQ(folder->realPath(way), base + "/pics/a b.png") << way.toStdString();
    EXPECT_EQ(folder->realPath("."), base);
    EXPECT_EQ(folder->realPath("to-outside"), QByteArray("/usr"));
    for (auto const& [way, error] : { std::pair<QByteArray, int> { "to-nothing", ENOENT }, { "loop", ELOOP },
             { "gone/../pics", ENOENT }, { "", EINVAL }, { base, EINVAL }, { QByteArray("pics\0x", 6), EINVAL } })
        EXPECT_EQ(folder->realPath(way).error(), SystemError(error)) << way.toStdString();
}

TEST_F(PosixFileSystemTest, A_file_below_is_opened_past_no_link_and_keeps_to_itself)
{
    root.makeFolder("pics");
    root.write("pics/a.png", "picture");
    root.write("top.png", "top");
    root.link("to-folder", "pics");
    root.link("to-file.png", "top.png");
    root.makeFifo("fifo.png");
    auto const folder = open();
    for (auto const* way : { "to-folder/a.png", "to-file.png", "gone.png", "gone/a.png", "top.png/a.png", "pics/", "",
             "/etc/passwd", "../top.png", "pics/../top.png", "./top.png", "pics//a.png" })
        EXPECT_FALSE(folder->open(way)) << way;
    EXPECT_FALSE(folder->open("fifo.png").value()->status()->isRegularFile);
    EXPECT_FALSE(folder->open("pics").value()->status()->isRegularFile);

    auto const file = folder->open("pics/a.png").value();
    EXPECT_TRUE(file->status()->isRegularFile);
    EXPECT_EQ(file->status()->size, 7);
    EXPECT_EQ(file->realPath(), folder->realPath().value() + "/pics/a.png");
    EXPECT_EQ(file->read(4), QByteArray("pict"));
    EXPECT_EQ(file->read(100), QByteArray("picture")); // from the start each time
    root.remove("pics/a.png");
    EXPECT_EQ(file->realPath().error(), SystemError(ENOENT));
}

TEST_F(PosixFileSystemTest, A_real_path_is_the_one_of_now_and_may_end_in_any_words)
{
    root.makeFolder("in");
    root.write("in/x.png (deleted)", "x");
    auto const folder = files.openFolder(root.path("in")).value();
    auto const file = folder->open("x.png (deleted)").value();
    ASSERT_EQ(rename(root.at("in").constData(), root.at("out").constData()), 0);
    EXPECT_EQ(folder->realPath(), root.at("out"));
    EXPECT_EQ(file->realPath(), root.at("out/x.png (deleted)"));
}

TEST_F(PosixFileSystemTest, Files_whose_size_the_system_reports_as_nothing_are_read_whole)
{
    auto const folder = files.openFolder(u"/proc/self"_s).value();
    EXPECT_EQ(folder->status("status").value().size, 0);
    EXPECT_GT(folder->read("status", 1 << 20).value().value().size(), 100);
}

TEST_F(PosixFileSystemTest, An_open_folder_stays_that_folder_when_its_path_changes)
{
    root.makeFolder("one");
    root.write("one/x.md", "first");
    auto const folder = files.openFolder(root.path("one")).value();
    ASSERT_EQ(rename(root.at("one").constData(), root.at("moved").constData()), 0);
    root.makeFolder("one");
    root.write("one/x.md", "second");
    EXPECT_EQ(folder->read("x.md", 100).value(), QByteArray("first"));
    EXPECT_EQ(files.openFolder(root.path("one/x.md")).error(), SystemError(ENOTDIR));
}

class PosixInstallFolderTest : public PosixFileSystemTest {
protected:
    std::unique_ptr<InstallFolder> open() const { return files.openForInstalling(root.path()).value(); }
};

TEST_F(PosixInstallFolderTest, A_file_is_made_written_linked_and_its_first_name_removed)
{
    auto const folder = open();
    auto file = folder->createFile(".new").value();
    EXPECT_TRUE(file->write("first, "));
    EXPECT_TRUE(file->write(QByteArray(100'000, 'x')));
    EXPECT_TRUE(file->close());
    EXPECT_TRUE(folder->publish(".new", "sheet.md"));
    EXPECT_THAT(files.everyName(root.path()).value(), UnorderedElementsAre(".new", "sheet.md"));
    EXPECT_TRUE(folder->remove(".new"));
    EXPECT_EQ(folder->remove(".new").error(), SystemError(ENOENT));
    EXPECT_EQ(folder->publish(".new", "other.md").error(), SystemError(ENOENT));
    EXPECT_EQ(root.read("sheet.md"), "first, " + QByteArray(100'000, 'x'));
    EXPECT_THAT(files.everyName(root.path()).value(), UnorderedElementsAre("sheet.md"));
}

TEST_F(PosixInstallFolderTest, No_operation_takes_a_name_that_is_there)
{
    auto const folder = open();
    root.write("file", "old");
    root.link("link", "nowhere");
    ASSERT_TRUE(folder->makeFolder("folder"));
    root.write("source", "new");
    for (auto const* name : { "file", "link", "folder" }) {
        EXPECT_EQ(folder->createFile(name).error(), SystemError(EEXIST)) << name;
        EXPECT_EQ(folder->makeFolder(name).error(), SystemError(EEXIST)) << name;
        EXPECT_EQ(folder->publish("source", name).error(), SystemError(EEXIST)) << name;
    }
    EXPECT_EQ(root.read("file"), "old");
    EXPECT_TRUE(folder->isFolder("folder").value());
    EXPECT_FALSE(folder->isFolder("file").value());
    EXPECT_FALSE(folder->isFolder("link").value());
    EXPECT_EQ(folder->isFolder("missing").error(), SystemError(ENOENT));
}

TEST_F(PosixInstallFolderTest, Neither_a_link_nor_a_name_leads_out_of_the_folder)
{
    auto const folder = open();
    root.write("file", "x");
    root.link("link", "nowhere");
    for (auto const* name : { "file", "link" })
        EXPECT_EQ(files.openForInstalling(root.path(name)).error(), SystemError(ENOTDIR)) << name;
    for (auto const* name : { "", ".", "..", "../x", "/tmp/x", "a/b" }) {
        SystemError const invalid(EINVAL);
        EXPECT_EQ(folder->createFile(name).error(), invalid) << name;
        EXPECT_EQ(folder->makeFolder(name).error(), invalid) << name;
        EXPECT_EQ(folder->isFolder(name).error(), invalid) << name;
        EXPECT_EQ(folder->publish(name, "y").error(), invalid) << name;
        EXPECT_EQ(folder->publish("file", name).error(), invalid) << name;
        EXPECT_EQ(folder->remove(name).error(), invalid) << name;
    }
    auto const missing = root.path("missing");
    EXPECT_EQ(files.openForInstalling(missing).error(), SystemError(ENOENT));
    EXPECT_EQ(files.everyName(missing).error(), SystemError(ENOENT));
}

TEST_F(PosixInstallFolderTest, A_new_file_is_the_users_to_write_and_others_to_read)
{
    auto const mask = umask(0);
    auto const file = files.openForInstalling(root.path()).value()->createFile("x").value();
    umask(mask);
    struct stat status {};
    ASSERT_EQ(stat(root.at("x").constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0644U);
}

TEST_F(PosixInstallFolderTest, A_folder_that_moves_while_it_is_open_keeps_what_is_made)
{
    ASSERT_EQ(mkdir(root.at("one").constData(), 0755), 0);
    auto const folder = files.openForInstalling(root.path("one")).value();
    ASSERT_EQ(rename(root.at("one").constData(), root.at("two").constData()), 0);
    ASSERT_EQ(mkdir(root.at("one").constData(), 0755), 0);
    EXPECT_TRUE(folder->createFile("x"));
    EXPECT_EQ(access(root.at("two/x").constData(), F_OK), 0);
    EXPECT_NE(access(root.at("one/x").constData(), F_OK), 0);
}

}
}
