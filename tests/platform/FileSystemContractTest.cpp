#include "platform/linux/files/PosixFileSystem.h"
#include "support/FakeFileSystem.h"
#include "support/OrdinaryUser.h"

#include <gmock/gmock.h>

#include <QFile>
#include <QTemporaryDir>

#include <cerrno>
#include <cstring>
#include <fstream>

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace Quillory {
namespace {

using testing::UnorderedElementsAre;
using Kind = FakeFileSystem::Kind;

struct InMemory {
    FakeFileSystem files;
    QString path = QStringLiteral("/library");

    InMemory() { files.addFolder(path); }
    void write(QByteArray const& name, QByteArray const& contents) { files.write(path, name, contents); }
    void make(QByteArray const& name, Kind kind)
    {
        FakeFileSystem::Entry entry;
        entry.kind = kind;
        files.put(path, name, entry);
    }
    void link(QByteArray const& name, QByteArray const& target)
    {
        files.put(path, name, { .kind = Kind::symbolicLink, .contents = target });
    }
    void remove(QByteArray const& name) { files.remove(path, name); }
    void removeFolder() { files.removeFolder(path); }
    void makeUnreadable(QByteArray const& name)
    {
        FakeFileSystem::Entry entry;
        entry.readError = EACCES;
        files.put(path, name, entry);
    }
};

struct OnDisk {
    QTemporaryDir temporary;
    PosixFileSystem files;
    QString path = temporary.path();

    OnDisk() { chmod(QFile::encodeName(path).constData(), 0755); }
    QByteArray at(QByteArray const& name) const { return QFile::encodeName(path) + '/' + name; }
    void write(QByteArray const& name, QByteArray const& contents)
    {
        // By the bytes of the name: QFile can't reach names that are no UTF-8.
        std::ofstream(at(name).constData(), std::ios::binary) << contents.toStdString();
    }
    void make(QByteArray const& name, Kind kind)
    {
        switch (kind) {
        case Kind::regular:
            write(name, {});
            break;
        case Kind::folder:
            ASSERT_EQ(mkdir(at(name).constData(), 0755), 0);
            break;
        case Kind::symbolicLink:
            write("target of " + name, "secret");
            ASSERT_EQ(symlink(at("target of " + name).constData(), at(name).constData()), 0);
            break;
        case Kind::fifo:
            ASSERT_EQ(mkfifo(at(name).constData(), 0644), 0);
            break;
        case Kind::socket: {
            sockaddr_un address {};
            address.sun_family = AF_UNIX;
            ASSERT_LT(static_cast<std::size_t>(at(name).size()), sizeof address.sun_path);
            std::memcpy(address.sun_path, at(name).constData(), static_cast<std::size_t>(at(name).size()));
            int const made = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
            ASSERT_EQ(bind(made, reinterpret_cast<sockaddr const*>(&address), sizeof address), 0);
            close(made);
            break;
        }
        }
    }
    void link(QByteArray const& name, QByteArray const& target)
    {
        ASSERT_EQ(symlink(target.constData(), at(name).constData()), 0);
    }
    void remove(QByteArray const& name) { unlink(at(name).constData()); }
    void removeFolder() { ASSERT_TRUE(temporary.remove()); }
    void makeUnreadable(QByteArray const& name)
    {
        write(name, "closed");
        ASSERT_EQ(chmod(at(name).constData(), 0), 0);
    }
};

template<typename Harness>
class FileSystemContract : public testing::Test, public Harness {
protected:
    std::unique_ptr<OpenFolder> open()
    {
        auto folder = this->files.openFolder(this->path);
        EXPECT_TRUE(folder);
        return folder ? std::move(*folder) : nullptr;
    }
};

using FileSystems = testing::Types<InMemory, OnDisk>;
TYPED_TEST_SUITE(FileSystemContract, FileSystems);

TYPED_TEST(FileSystemContract, A_listing_gives_every_entry_but_the_hidden_ones_each_time_anew)
{
    QByteArray const noText("no\xff.md");
    for (QByteArray const& name : { QByteArray("b.md"), QByteArray("B.MD"), QByteArray(".hidden.md"), noText })
        this->write(name, "");
    this->make("folder.md", Kind::folder);
    auto const folder = this->open();
    for (int repeat = 0; repeat < 2; ++repeat)
        EXPECT_THAT(folder->names().value(), UnorderedElementsAre("b.md", "B.MD", noText, "folder.md"));
    this->remove("B.MD");
    EXPECT_THAT(folder->names().value(), UnorderedElementsAre("b.md", noText, "folder.md"));
    EXPECT_EQ(folder->read(noText, 10).value(), QByteArray(""));
    this->remove(noText); // which the temporary folder's own end couldn't
}

TYPED_TEST(FileSystemContract, A_missing_or_removed_folder_fails)
{
    EXPECT_EQ(this->files.openFolder(this->path + QStringLiteral("/missing")).error(), SystemError(ENOENT));
    auto const folder = this->open();
    this->removeFolder();
    EXPECT_EQ(folder->names().error(), SystemError(ENOENT));
}

TYPED_TEST(FileSystemContract, Only_regular_files_are_read_and_nothing_blocks)
{
    struct Case {
        Kind kind;
        bool isRegular;
        bool isLink;
        bool isRefused; // else absent
    };
    for (auto const& [kind, isRegular, isLink, isRefused] : {
             Case { Kind::regular, true, false, false },
             Case { Kind::folder, false, false, false },
             Case { Kind::symbolicLink, false, true, true },
             Case { Kind::fifo, false, false, false },
             Case { Kind::socket, false, false, false },
         }) {
        auto const name = "x" + QByteArray::number(static_cast<int>(kind)) + ".md";
        SCOPED_TRACE(name.toStdString());
        this->make(name, kind);
        auto const folder = this->open();
        auto const status = folder->status(name).value();
        EXPECT_EQ(status.isRegularFile, isRegular);
        EXPECT_EQ(status.isSymbolicLink, isLink);
        auto const bytes = folder->read(name, 100);
        if (isRefused)
            EXPECT_EQ(bytes.error(), SystemError(ELOOP));
        else
            EXPECT_EQ(bytes.value().has_value(), isRegular);
    }
}

TYPED_TEST(FileSystemContract, A_read_gives_at_most_its_limit)
{
    for (qint64 size : { 0, 1, 99, 100, 101, 4096, 5000, 2097152, 2097153 }) {
        SCOPED_TRACE(size);
        QByteArray contents(size, 'x');
        for (qsizetype at = 0; at < size; at += 97)
            contents[at] = static_cast<char>(at % 251);
        this->write("x.md", contents);
        auto const folder = this->open();
        EXPECT_EQ(folder->status("x.md").value().size, size);
        for (qint64 limit : { qint64 { 0 }, qint64 { 1 }, qint64 { 100 }, size, size + 1, qint64 { 2097153 } })
            EXPECT_EQ(folder->read("x.md", limit).value(), contents.first(std::min(size, limit))) << limit;
    }
}

TYPED_TEST(FileSystemContract, What_happens_between_the_look_and_the_read_shows_in_the_read)
{
    this->write("grows.md", "a");
    this->write("turns.md", "a");
    this->write("vanishes.md", "a");
    auto const folder = this->open();
    for (auto const* name : { "grows.md", "turns.md", "vanishes.md" })
        EXPECT_TRUE(folder->status(name).value().isRegularFile);
    this->write("grows.md", QByteArray(100000, 'g'));
    this->remove("turns.md");
    this->make("turns.md", Kind::fifo);
    this->remove("vanishes.md");
    EXPECT_EQ(folder->read("grows.md", 50000).value(), QByteArray(50000, 'g'));
    EXPECT_EQ(folder->read("turns.md", 50000).value(), std::nullopt);
    EXPECT_EQ(folder->read("vanishes.md", 50000).error(), SystemError(ENOENT));
    EXPECT_EQ(folder->status("vanishes.md").error(), SystemError(ENOENT));
}

TYPED_TEST(FileSystemContract, A_file_without_permission_fails_when_it_is_read)
{
    this->makeUnreadable("closed.md");
    OrdinaryUser const user;
    ASSERT_TRUE(user.holds());
    auto const folder = this->open();
    EXPECT_TRUE(folder->status("closed.md").value().isRegularFile);
    EXPECT_EQ(folder->read("closed.md", 10).error(), SystemError(EACCES));
}

TYPED_TEST(FileSystemContract, A_name_that_leads_out_of_the_folder_is_refused)
{
    this->write("x.md", "x");
    auto const folder = this->open();
    for (auto const& name : { QByteArray(""), QByteArray("."), QByteArray(".."), QByteArray("./x.md"),
             QByteArray("/etc/passwd"), QByteArray("x.md\0y", 6) }) {
        EXPECT_EQ(folder->read(name, 10).error(), SystemError(EINVAL)) << name.toStdString();
        EXPECT_EQ(folder->status(name).error(), SystemError(EINVAL)) << name.toStdString();
    }
}

TYPED_TEST(FileSystemContract, A_real_path_follows_every_link_and_may_lead_outside)
{
    this->make("pics", Kind::folder);
    this->write("pics/a b.png", "picture");
    this->link("to-folder", "pics");
    this->link("to-file.png", "to-folder/a b.png");
    this->link("to-nothing", "gone");
    this->link("loop", "loop");
    this->link("to-outside", "/usr");
    auto const folder = this->open();
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

TYPED_TEST(FileSystemContract, A_file_below_is_opened_past_no_link_and_keeps_to_itself)
{
    this->make("pics", Kind::folder);
    this->write("pics/a.png", "picture");
    this->write("top.png", "top");
    this->link("to-folder", "pics");
    this->link("to-file.png", "top.png");
    this->make("fifo.png", Kind::fifo);
    auto const folder = this->open();
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
    this->remove("pics/a.png");
    EXPECT_EQ(file->realPath().error(), SystemError(ENOENT));
}

TEST(PosixFileSystem, A_real_path_is_the_one_of_now_and_may_end_in_any_words)
{
    OnDisk disk;
    disk.make("in", Kind::folder);
    disk.write("in/x.png (deleted)", "x");
    auto const folder = disk.files.openFolder(disk.path + QStringLiteral("/in")).value();
    auto const file = folder->open("x.png (deleted)").value();
    ASSERT_EQ(rename(disk.at("in").constData(), disk.at("out").constData()), 0);
    EXPECT_EQ(folder->realPath(), disk.at("out"));
    EXPECT_EQ(file->realPath(), disk.at("out/x.png (deleted)"));
}

TEST(PosixFileSystem, Files_whose_size_the_system_reports_as_nothing_are_read_whole)
{
    PosixFileSystem const files;
    auto const folder = files.openFolder(QStringLiteral("/proc/self")).value();
    EXPECT_EQ(folder->status("status").value().size, 0);
    EXPECT_GT(folder->read("status", 1 << 20).value().value().size(), 100);
}

TEST(PosixFileSystem, An_open_folder_stays_that_folder_when_its_path_changes)
{
    OnDisk disk;
    disk.make("one", Kind::folder);
    disk.write("one/x.md", "first");
    auto const folder = disk.files.openFolder(disk.path + QStringLiteral("/one")).value();
    ASSERT_EQ(rename(disk.at("one").constData(), disk.at("moved").constData()), 0);
    disk.make("one", Kind::folder);
    disk.write("one/x.md", "second");
    EXPECT_EQ(folder->read("x.md", 100).value(), QByteArray("first"));
    EXPECT_EQ(disk.files.openFolder(disk.path + QStringLiteral("/one/x.md")).error(), SystemError(ENOTDIR));
}

template<typename Harness>
class InstallFolderContract : public testing::Test, public Harness {
protected:
    std::unique_ptr<InstallFolder> open() { return this->files.openForInstalling(this->path).value(); }
    QByteArray contents(QByteArray const& name)
    {
        return this->files.openFolder(this->path).value()->read(name, 1 << 20).value().value();
    }
};

TYPED_TEST_SUITE(InstallFolderContract, FileSystems);

TYPED_TEST(InstallFolderContract, A_file_is_made_written_linked_and_its_first_name_removed)
{
    auto const folder = this->open();
    auto file = folder->createFile(".new").value();
    EXPECT_TRUE(file->write("first, "));
    EXPECT_TRUE(file->write(QByteArray(100'000, 'x')));
    EXPECT_TRUE(file->close());
    EXPECT_TRUE(folder->publish(".new", "sheet.md"));
    EXPECT_THAT(this->files.everyName(this->path).value(), UnorderedElementsAre(".new", "sheet.md"));
    EXPECT_TRUE(folder->remove(".new"));
    EXPECT_EQ(folder->remove(".new").error(), SystemError(ENOENT));
    EXPECT_EQ(folder->publish(".new", "other.md").error(), SystemError(ENOENT));
    EXPECT_EQ(this->contents("sheet.md"), "first, " + QByteArray(100'000, 'x'));
    EXPECT_THAT(this->files.everyName(this->path).value(), UnorderedElementsAre("sheet.md"));
}

TYPED_TEST(InstallFolderContract, No_operation_takes_a_name_that_is_there)
{
    auto const folder = this->open();
    this->write("file", "old");
    this->link("link", "nowhere");
    ASSERT_TRUE(folder->makeFolder("folder"));
    this->write("source", "new");
    for (auto const* name : { "file", "link", "folder" }) {
        EXPECT_EQ(folder->createFile(name).error(), SystemError(EEXIST)) << name;
        EXPECT_EQ(folder->makeFolder(name).error(), SystemError(EEXIST)) << name;
        EXPECT_EQ(folder->publish("source", name).error(), SystemError(EEXIST)) << name;
    }
    EXPECT_EQ(this->contents("file"), "old");
    EXPECT_TRUE(folder->isFolder("folder").value());
    EXPECT_FALSE(folder->isFolder("file").value());
    EXPECT_FALSE(folder->isFolder("link").value());
    EXPECT_EQ(folder->isFolder("missing").error(), SystemError(ENOENT));
}

TYPED_TEST(InstallFolderContract, Neither_a_link_nor_a_name_leads_out_of_the_folder)
{
    auto const folder = this->open();
    this->write("file", "x");
    this->link("link", "nowhere");
    for (auto const* name : { "file", "link" })
        EXPECT_EQ(
            this->files.openForInstalling(this->path + u'/' + QString::fromUtf8(name)).error(), SystemError(ENOTDIR))
            << name;
    for (auto const* name : { "", ".", "..", "../x", "/tmp/x", "a/b" }) {
        SystemError const invalid(EINVAL);
        EXPECT_EQ(folder->createFile(name).error(), invalid) << name;
        EXPECT_EQ(folder->makeFolder(name).error(), invalid) << name;
        EXPECT_EQ(folder->isFolder(name).error(), invalid) << name;
        EXPECT_EQ(folder->publish(name, "y").error(), invalid) << name;
        EXPECT_EQ(folder->publish("file", name).error(), invalid) << name;
        EXPECT_EQ(folder->remove(name).error(), invalid) << name;
    }
    auto const missing = this->path + QStringLiteral("/missing");
    EXPECT_EQ(this->files.openForInstalling(missing).error(), SystemError(ENOENT));
    EXPECT_EQ(this->files.everyName(missing).error(), SystemError(ENOENT));
}

TEST(PosixInstallFolder, A_new_file_is_the_users_to_write_and_others_to_read)
{
    OnDisk disk;
    auto const mask = umask(0);
    auto const file = disk.files.openForInstalling(disk.path).value()->createFile("x").value();
    umask(mask);
    struct stat status {};
    ASSERT_EQ(stat(disk.at("x").constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0644U);
}

TEST(PosixInstallFolder, A_folder_that_moves_while_it_is_open_keeps_what_is_made)
{
    OnDisk disk;
    ASSERT_EQ(mkdir(disk.at("one").constData(), 0755), 0);
    auto const folder = disk.files.openForInstalling(disk.path + QStringLiteral("/one")).value();
    ASSERT_EQ(rename(disk.at("one").constData(), disk.at("two").constData()), 0);
    ASSERT_EQ(mkdir(disk.at("one").constData(), 0755), 0);
    EXPECT_TRUE(folder->createFile("x"));
    EXPECT_EQ(access(disk.at("two/x").constData(), F_OK), 0);
    EXPECT_NE(access(disk.at("one/x").constData(), F_OK), 0);
}

}
}
