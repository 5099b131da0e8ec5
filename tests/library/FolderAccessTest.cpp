#include "library/FolderAccess.h"

#include "support/FakeFolderBookmarks.h"
#include "support/MemoryUserDefaults.h"

#include <gmock/gmock.h>

#include <cerrno>

namespace Quillory {
namespace {

using namespace Qt::StringLiterals;
using testing::ElementsAre;

class FolderAccessTest : public testing::Test {
protected:
    FolderAccessTest()
    {
        bookmarks.addFolder(u"/a"_s);
        bookmarks.addFolder(u"/b"_s);
    }

    std::optional<QByteArray> stored() const { return defaults.get<QByteArray>(u"libraryBookmark"_s); }

    MemoryUserDefaults defaults;
    FakeFolderBookmarks bookmarks;
    FolderAccess access { defaults, bookmarks };
};

TEST_F(FolderAccessTest, A_chosen_folder_comes_back_and_nothing_comes_of_nothing)
{
    EXPECT_EQ(access.restore().value(), std::nullopt);
    ASSERT_TRUE(access.remember(u"/a"_s));

    FolderAccess next { defaults, bookmarks };
    EXPECT_EQ(next.restore().value(), u"/a"_s);
    EXPECT_TRUE(next.isScoped());
}

TEST_F(FolderAccessTest, The_new_scope_opens_before_the_old_one_closes_and_each_closes_once)
{
    ASSERT_TRUE(access.remember(u"/a"_s));
    ASSERT_TRUE(access.remember(u"/b"_s));
    access.release();
    access.release();
    EXPECT_THAT(bookmarks.scopeEvents(), ElementsAre(u"start /a"_s, u"start /b"_s, u"stop /a"_s, u"stop /b"_s));
    EXPECT_EQ(access.url(), std::nullopt);
}

TEST_F(FolderAccessTest, A_readable_folder_without_a_scope_connects_and_no_stop_is_owed)
{
    bookmarks.addFolder(u"/open"_s, FakeFolderBookmarks::Access::readableWithoutScope);
    ASSERT_TRUE(access.remember(u"/open"_s));
    EXPECT_FALSE(access.isScoped());
    access.release();
    EXPECT_THAT(bookmarks.scopeEvents(), ElementsAre());
}

TEST_F(FolderAccessTest, A_stale_bookmark_is_replaced_by_a_fresh_one)
{
    ASSERT_TRUE(access.remember(u"/a"_s));
    auto const old = stored();
    bookmarks.renameFolder(u"/a"_s, u"/c"_s);
    EXPECT_EQ(access.restore().value(), u"/c"_s);
    EXPECT_NE(stored(), old);
    EXPECT_EQ(bookmarks.resolve(*stored()).value(), (FolderBookmarks::Resolved { u"/c"_s, false }));
}

TEST_F(FolderAccessTest, A_failure_leaves_the_folder_and_the_stored_bookmark)
{
    ASSERT_TRUE(access.remember(u"/a"_s));
    auto const before = stored();

    bookmarks.addFolder(u"/locked"_s, FakeFolderBookmarks::Access::none);
    EXPECT_EQ(access.remember(u"/locked"_s).error(), SystemError(EACCES));
    bookmarks.failBookmark(SystemError(EIO));
    EXPECT_EQ(access.remember(u"/b"_s).error(), SystemError(EIO));
    EXPECT_EQ(access.url(), u"/a"_s);
    EXPECT_THAT(bookmarks.openScopes(), ElementsAre(u"/a"_s));

    bookmarks.removeFolder(u"/a"_s);
    EXPECT_FALSE(access.restore());
    EXPECT_EQ(stored(), before);
}

}
}
