#include "platform/linux/files/PosixFileSystem.h"
#include "support/FakeFileSystem.h"

#include <gmock/gmock.h>

#include <QFile>
#include <QTemporaryDir>

#include <cerrno>

#include <sys/stat.h>
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
    void makeDanglingLink(QByteArray const& name) { files.put(path, name, { .kind = Kind::symbolicLink }); }
};

struct OnDisk {
    QTemporaryDir temporary;
    PosixFileSystem files;
    QString path = temporary.path();

    QByteArray at(QByteArray const& name) const { return QFile::encodeName(path) + '/' + name; }
    void write(QByteArray const& name, QByteArray const& contents)
    {
        QFile file(QFile::decodeName(at(name)));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(contents);
    }
    void makeDanglingLink(QByteArray const& name) { ASSERT_EQ(symlink("nowhere", at(name).constData()), 0); }
};

template<typename Harness>
class InstallFolderContract : public testing::Test, public Harness {
protected:
    std::unique_ptr<InstallFolder> open() { return this->files.openForInstalling(this->path).value(); }
    QByteArray contents(QByteArray const& name)
    {
        return this->files.openFolder(this->path).value()->read(name, 1 << 20).value().value();
    }
};

using Folders = testing::Types<InMemory, OnDisk>;
TYPED_TEST_SUITE(InstallFolderContract, Folders);

TYPED_TEST(InstallFolderContract, A_file_is_made_written_linked_and_its_first_name_removed)
{
    auto const folder = this->open();
    auto file = folder->createFile(".new").value();
    EXPECT_TRUE(file->write("first, "));
    EXPECT_TRUE(file->write(QByteArray(100'000, 'x')));
    EXPECT_TRUE(file->close());
    EXPECT_TRUE(folder->link(".new", "sheet.md"));
    EXPECT_THAT(this->files.everyName(this->path).value(), UnorderedElementsAre(".new", "sheet.md"));
    EXPECT_TRUE(folder->remove(".new"));
    EXPECT_EQ(folder->remove(".new").error(), SystemError(ENOENT));
    EXPECT_EQ(folder->link(".new", "other.md").error(), SystemError(ENOENT));
    EXPECT_EQ(this->contents("sheet.md"), "first, " + QByteArray(100'000, 'x'));
    EXPECT_THAT(this->files.everyName(this->path).value(), UnorderedElementsAre("sheet.md"));
}

TYPED_TEST(InstallFolderContract, No_operation_takes_a_name_that_is_there)
{
    auto const folder = this->open();
    this->write("file", "old");
    this->makeDanglingLink("link");
    ASSERT_TRUE(folder->makeFolder("folder"));
    this->write("source", "new");
    for (auto const* name : { "file", "link", "folder" }) {
        EXPECT_EQ(folder->createFile(name).error(), SystemError(EEXIST)) << name;
        EXPECT_EQ(folder->makeFolder(name).error(), SystemError(EEXIST)) << name;
        EXPECT_EQ(folder->link("source", name).error(), SystemError(EEXIST)) << name;
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
    this->makeDanglingLink("link");
    for (auto const* name : { "file", "link" })
        EXPECT_EQ(
            this->files.openForInstalling(this->path + u'/' + QString::fromUtf8(name)).error(), SystemError(ENOTDIR))
            << name;
    for (auto const* name : { "", ".", "..", "../x", "/tmp/x", "a/b" }) {
        SystemError const invalid(EINVAL);
        EXPECT_EQ(folder->createFile(name).error(), invalid) << name;
        EXPECT_EQ(folder->makeFolder(name).error(), invalid) << name;
        EXPECT_EQ(folder->isFolder(name).error(), invalid) << name;
        EXPECT_EQ(folder->link(name, "y").error(), invalid) << name;
        EXPECT_EQ(folder->link("file", name).error(), invalid) << name;
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
