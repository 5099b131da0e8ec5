#include "linux/files/PathBookmarks.h"
#include "support/OrdinaryUser.h"
#include "support/TemporaryFolder.h"
#include "support/Test.h"

#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>

#include <cerrno>

#include <sys/stat.h>

namespace Quillory {
namespace {

using Resolved = FolderBookmarks::Resolved;

class PathBookmarksTest : public Test {
protected:
    QByteArray bornAt(QJsonValue const& time) const
    {
        auto object = QJsonDocument::fromJson(token).object();
        object.insert(u"birthTime"_s, time);
        return QJsonDocument(object).toJson();
    }

    TemporaryFolder const root;
    PathBookmarks bookmarks;
    QString const path = (root.makeFolder("sheets"), root.path("sheets"));
    QByteArray const token = bookmarks.bookmark(path).value();
};

TEST_F(PathBookmarksTest, A_folder_is_found_past_its_links_and_renamed_while_nothing_stands_at_its_old_place)
{
    root.link("link", "sheets");
    auto const throughLink = bookmarks.bookmark(root.path("link")).value();
    root.remove("link");
    EXPECT_EQ(bookmarks.resolve(throughLink).value(), (Resolved { path, false }));
    root.rename("sheets", "renamed");
    EXPECT_EQ(bookmarks.resolve(token).value(), (Resolved { root.path("renamed"), true }));
    root.makeFolder("sheets");
    EXPECT_EQ(bookmarks.resolve(token).value(), (Resolved { path, true })) << "another folder";
}

TEST_F(PathBookmarksTest, A_missing_folder_fails_and_a_file_is_none)
{
    root.remove("sheets");
    EXPECT_EQ(bookmarks.resolve(token).error(), SystemError(ENOENT));
    EXPECT_EQ(bookmarks.bookmark(path).error(), SystemError(ENOENT));
    EXPECT_FALSE(bookmarks.startAccess(path).isActive());
    EXPECT_FALSE(bookmarks.isReadable(path));
    root.write("sheets", "");
    EXPECT_EQ(bookmarks.bookmark(path).error(), SystemError(ENOTDIR));
    EXPECT_EQ(bookmarks.resolve(token).error(), SystemError(ENOTDIR));
}

TEST_F(PathBookmarksTest, A_token_that_has_only_a_path_is_enough_and_a_malformed_one_fails)
{
    auto const least = QJsonDocument(QJsonObject { { u"path"_s, path } }).toJson();
    EXPECT_EQ(bookmarks.resolve(least).value(), (Resolved { path, false }));
    for (auto const* malformed : { "", "nonsense", "[]", "{}", R"({"path": 1})", R"({"path": "relative"})",
             R"({"path": ""})", R"({"path": "/", "inode": "1"})", R"({"path": "/", "inode": 1.5})" })
        EXPECT_EQ(bookmarks.resolve(malformed).error(), SystemError(EINVAL)) << malformed;
}

TEST_F(PathBookmarksTest, The_same_inode_alone_is_another_folder)
{
    auto const other = bornAt(1);
    EXPECT_EQ(bookmarks.resolve(other).value(), (Resolved { path, true }));
    root.rename("sheets", "other");
    EXPECT_EQ(bookmarks.resolve(other).error(), SystemError(ENOENT));
    EXPECT_EQ(bookmarks.resolve(bornAt(u"1"_s)).error(), SystemError(EINVAL));
}

TEST_F(PathBookmarksTest, A_readable_folder_gives_a_scope_that_holds_nothing_open_so_that_the_drive_can_go)
{
    auto const descriptors = [] {
        return QDir(u"/proc/self/fd"_s).entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System).size();
    };
    auto const before = descriptors();
    EXPECT_TRUE(bookmarks.isReadable(path));
    EXPECT_TRUE(bookmarks.startAccess(path).isActive());
    auto const scope = bookmarks.startAccess(path);
    EXPECT_EQ(descriptors(), before);
    ASSERT_EQ(chmod(root.at("sheets").constData(), 0), 0);
    OrdinaryUser const user;
    ASSERT_TRUE(user.holds());
    EXPECT_FALSE(bookmarks.isReadable(path));
    EXPECT_FALSE(bookmarks.startAccess(path).isActive());
}

}
}
