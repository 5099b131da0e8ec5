#include "platform/linux/files/PathBookmarks.h"
#include "support/FakeFolderBookmarks.h"
#include "support/OrdinaryUser.h"

#include <gmock/gmock.h>

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <cerrno>

#include <sys/stat.h>
#include <unistd.h>

namespace Quillory {
namespace {

using Resolved = FolderBookmarks::Resolved;

struct InMemory {
    FakeFolderBookmarks bookmarks;
    QString root = QStringLiteral("/home/user");
    void add(QString const& path) { bookmarks.addFolder(path); }
    void remove(QString const& path) { bookmarks.removeFolder(path); }
    void rename(QString const& from, QString const& to) { bookmarks.renameFolder(from, to); }
};

struct OnDisk {
    QTemporaryDir folder;
    PathBookmarks bookmarks;
    QString root = QDir(folder.path()).canonicalPath();
    void add(QString const& path) { ASSERT_TRUE(QDir().mkdir(path)); }
    void remove(QString const& path) { ASSERT_TRUE(QDir().rmdir(path)); }
    void rename(QString const& from, QString const& to) { ASSERT_TRUE(QDir().rename(from, to)); }
};

template<typename Harness>
class FolderBookmarksContract : public testing::Test, public Harness {
protected:
    FolderBookmarksContract()
    {
        this->add(m_path);
        m_token = this->bookmarks.bookmark(m_path).value();
    }
    QString sibling(QString const& name) const { return this->root + u'/' + name; }

    QString m_path = sibling(QStringLiteral("sheets"));
    QByteArray m_token;
};

using Bookmarks = testing::Types<InMemory, OnDisk>;
TYPED_TEST_SUITE(FolderBookmarksContract, Bookmarks);

TYPED_TEST(FolderBookmarksContract, A_renamed_folder_is_found_while_nothing_stands_at_its_old_place)
{
    auto const renamed = this->sibling(QStringLiteral("renamed"));
    this->rename(this->m_path, renamed);
    EXPECT_EQ(this->bookmarks.resolve(this->m_token).value(), (Resolved { renamed, true }));
    this->add(this->m_path);
    EXPECT_EQ(this->bookmarks.resolve(this->m_token).value(), (Resolved { this->m_path, true }));
}

TYPED_TEST(FolderBookmarksContract, Another_folder_in_its_place_is_taken_and_stale)
{
    // The new folder stands before the old one goes, so that it can't be given the same inode.
    auto const other = this->sibling(QStringLiteral("other"));
    this->add(other);
    this->remove(this->m_path);
    this->rename(other, this->m_path);
    EXPECT_EQ(this->bookmarks.resolve(this->m_token).value(), (Resolved { this->m_path, true }));
}

TYPED_TEST(FolderBookmarksContract, A_missing_folder_fails)
{
    this->remove(this->m_path);
    EXPECT_EQ(this->bookmarks.resolve(this->m_token).error(), SystemError(ENOENT));
    EXPECT_EQ(this->bookmarks.bookmark(this->m_path).error(), SystemError(ENOENT));
    EXPECT_FALSE(this->bookmarks.startAccess(this->m_path).isActive());
    EXPECT_FALSE(this->bookmarks.isReadable(this->m_path));
}

TYPED_TEST(FolderBookmarksContract, A_token_that_has_only_a_path_is_enough)
{
    auto const token = QJsonDocument(QJsonObject { { QStringLiteral("path"), this->m_path } }).toJson();
    EXPECT_EQ(this->bookmarks.resolve(token).value(), (Resolved { this->m_path, false }));
}

TYPED_TEST(FolderBookmarksContract, A_malformed_token_fails)
{
    for (auto const* token : { "", "nonsense", "[]", "{}", R"({"path": 1})", R"({"path": "relative"})",
             R"({"path": ""})", R"({"path": "/", "inode": "1"})" })
        EXPECT_EQ(this->bookmarks.resolve(token).error(), SystemError(EINVAL)) << token;
}

TYPED_TEST(FolderBookmarksContract, A_readable_folder_gives_a_scope)
{
    EXPECT_TRUE(this->bookmarks.isReadable(this->m_path));
    auto scope = this->bookmarks.startAccess(this->m_path);
    EXPECT_TRUE(scope.isActive());
    scope.end();
    EXPECT_FALSE(scope.isActive());
}

class PathBookmarksTest : public testing::Test, public OnDisk {
protected:
    qsizetype openDescriptors() const
    {
        return QDir(QStringLiteral("/proc/self/fd"))
            .entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System)
            .size();
    }
    QByteArray changed(QByteArray const& token, QString const& key, QJsonValue const& value) const
    {
        auto object = QJsonDocument::fromJson(token).object();
        object.insert(key, value);
        return QJsonDocument(object).toJson();
    }
};

TEST_F(PathBookmarksTest, A_link_is_resolved_when_the_bookmark_is_made)
{
    auto const real = root + QStringLiteral("/real");
    auto const link = root + QStringLiteral("/link");
    add(real);
    ASSERT_TRUE(QFile::link(real, link));
    auto const token = bookmarks.bookmark(link).value();
    ASSERT_TRUE(QFile::remove(link));
    EXPECT_EQ(bookmarks.resolve(token).value(), (Resolved { real, false }));
}

TEST_F(PathBookmarksTest, The_same_inode_alone_is_another_folder)
{
    auto const path = root + QStringLiteral("/sheets");
    add(path);
    auto const birthTime = QStringLiteral("birthTime");
    auto const token = changed(bookmarks.bookmark(path).value(), birthTime, 1);
    EXPECT_EQ(bookmarks.resolve(token).value(), (Resolved { path, true }));
    rename(path, root + QStringLiteral("/other"));
    EXPECT_EQ(bookmarks.resolve(token).error(), SystemError(ENOENT));
    EXPECT_EQ(bookmarks.resolve(changed(token, birthTime, QStringLiteral("1"))).error(), SystemError(EINVAL));
}

TEST_F(PathBookmarksTest, A_file_is_no_folder)
{
    auto const path = root + QStringLiteral("/sheets");
    add(path);
    auto const token = bookmarks.bookmark(path).value();
    remove(path);
    ASSERT_TRUE(QFile(path).open(QIODevice::WriteOnly));
    EXPECT_EQ(bookmarks.bookmark(path).error(), SystemError(ENOTDIR));
    EXPECT_EQ(bookmarks.resolve(token).error(), SystemError(ENOTDIR));
}

TEST_F(PathBookmarksTest, A_scope_holds_nothing_open_so_that_the_drive_can_go)
{
    auto const before = openDescriptors();
    auto const scope = bookmarks.startAccess(root);
    EXPECT_EQ(openDescriptors(), before);
}

TEST_F(PathBookmarksTest, A_folder_without_permission_gives_no_scope)
{
    auto const path = root + QStringLiteral("/closed");
    add(path);
    ASSERT_EQ(chmod(QFile::encodeName(root).constData(), 0755), 0);
    ASSERT_EQ(chmod(QFile::encodeName(path).constData(), 0), 0);
    OrdinaryUser const user;
    ASSERT_TRUE(user.holds());
    EXPECT_FALSE(bookmarks.isReadable(path));
    EXPECT_FALSE(bookmarks.startAccess(path).isActive());
}

}
}
