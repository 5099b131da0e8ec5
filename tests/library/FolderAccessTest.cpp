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

TEST_F(FolderAccessTest, A_chosen_folder_comes_back_under_its_new_name_too_and_a_failure_leaves_what_was_stored)
{
    EXPECT_EQ(access.restore().value(), std::nullopt);
    ASSERT_TRUE(access.remember(a));
    auto const old = stored();
    EXPECT_EQ(access.remember(root.path("gone")).error(), SystemError(EACCES));
    bookmarks.bookmarkError = SystemError(EIO);
    EXPECT_EQ(access.remember(b).error(), SystemError(EIO));
    bookmarks.bookmarkError.reset();
    EXPECT_EQ(access.url(), a);
    EXPECT_EQ(stored(), old);
    EXPECT_THAT(bookmarks.scopes, ElementsAre(u"start "_s + a, u"start "_s + b, u"stop "_s + b));

    root.rename("a", "c");
    FolderAccess next { defaults, bookmarks };
    EXPECT_EQ(next.restore().value(), root.path("c"));
    EXPECT_TRUE(next.isScoped());
    EXPECT_NE(stored(), old);
    EXPECT_EQ(bookmarks.resolve(*stored()).value(), (FolderBookmarks::Resolved { root.path("c"), false }));
    auto const fresh = stored();
    root.remove("c");
    EXPECT_FALSE(next.restore());
    EXPECT_EQ(stored(), fresh);
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

}
}
