#include "library/FolderAccess.h"

#include "support/FaultyBookmarks.h"
#include "support/MemoryUserDefaults.h"
#include "support/TemporaryFolder.h"
#include "support/Test.h"

#include <cerrno>

namespace Quillory {
namespace {

class FolderAccessTest : public Test {
protected:
    std::optional<QByteArray> stored() const { return defaults.get<QByteArray>(u"libraryBookmark"_s); }

    TemporaryFolder root;
    QString const a = (root.makeFolder("a"), root.path("a")), b = (root.makeFolder("b"), root.path("b"));
    MemoryUserDefaults defaults;
    FaultyBookmarks bookmarks;
    FolderAccess access { defaults, bookmarks };
};

TEST_F(FolderAccessTest, A_chosen_folder_comes_back_under_its_new_name_too_and_nothing_comes_of_nothing)
{
    EXPECT_EQ(access.restore().value(), std::nullopt);
    ASSERT_TRUE(access.remember(a));
    FolderAccess next { defaults, bookmarks };
    EXPECT_EQ(next.restore().value(), a);
    EXPECT_TRUE(next.isScoped());

    auto const old = stored();
    root.rename("a", "c");
    EXPECT_EQ(access.restore().value(), root.path("c"));
    EXPECT_NE(stored(), old);
    EXPECT_EQ(bookmarks.resolve(*stored()).value(), (FolderBookmarks::Resolved { root.path("c"), false }));
}

TEST_F(FolderAccessTest, The_new_scope_opens_before_the_old_one_closes_and_each_closes_once)
{
    ASSERT_TRUE(access.remember(a));
    ASSERT_TRUE(access.remember(b));
    access.release();
    access.release();
    EXPECT_THAT(bookmarks.scopes, ElementsAre(u"start "_s + a, u"start "_s + b, u"stop "_s + a, u"stop "_s + b));
    EXPECT_EQ(access.url(), std::nullopt);

    bookmarks.refusesScopes = true; // a readable folder connects without
    ASSERT_TRUE(access.remember(a));
    EXPECT_FALSE(access.isScoped());
    access.release();
    EXPECT_EQ(bookmarks.scopes.size(), 4);
}

TEST_F(FolderAccessTest, A_failure_leaves_the_folder_and_the_stored_bookmark)
{
    ASSERT_TRUE(access.remember(a));
    auto const before = stored();
    EXPECT_EQ(access.remember(root.path("gone")).error(), SystemError(EACCES));
    bookmarks.bookmarkError = SystemError(EIO);
    EXPECT_EQ(access.remember(b).error(), SystemError(EIO));
    EXPECT_EQ(access.url(), a);
    EXPECT_THAT(bookmarks.scopes, ElementsAre(u"start "_s + a, u"start "_s + b, u"stop "_s + b));
    root.remove("a");
    EXPECT_FALSE(access.restore());
    EXPECT_EQ(stored(), before);
}

}
}
