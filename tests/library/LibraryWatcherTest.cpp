#include "library/LibraryStore.h"
#include "support/FakeLibraryServices.h"

#include <gmock/gmock.h>

namespace Quillory {
namespace {

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::UnorderedElementsAre;

class LibraryWatcherTest : public testing::Test, protected FakeLibraryServices {
protected:
    LibraryWatcherTest() { files.addFolder(folder); }

    void pass()
    {
        executor.advance(LibraryWatcher::latency + LibraryStore::reloadDebounce);
        executor.settle();
    }

    // How many loads it took until all was quiet.
    int loadsAfter(std::function<void()> const& change)
    {
        auto const before = files.opens(folder);
        change();
        for (int round = 0; round < 5; ++round)
            pass();
        return files.opens(folder) - before;
    }

    QString const folder = u"/library"_s;
    LibraryStore store { services(), LibraryStore::RestoreFolder::no };
};

TEST_F(LibraryWatcherTest, Folders_are_watched_as_long_as_sheets_take_pictures_from_them)
{
    files.write(folder, "a.md", "![x](pics/deep/a.png) ![y](../outside/b.png) ![z](c.png)");
    store.connect(folder);
    // What came before the watches did is found by one load more.
    EXPECT_EQ(loadsAfter([] { }), 2);
    EXPECT_THAT(events.watchedFolders(), UnorderedElementsAre(folder, u"/library/pics"_s, u"/library/pics/deep"_s));

    EXPECT_EQ(loadsAfter([&] {
        for (int change = 0; change < 10; ++change) {
            events.fire(folder);
            events.fire(u"/library/pics/deep"_s);
        }
    }),
        1);
    files.write(folder, "a.md", "![x](pics/a.png)");
    EXPECT_EQ(loadsAfter([&] { events.fire(folder); }), 1);
    EXPECT_THAT(events.watchedFolders(), UnorderedElementsAre(folder, u"/library/pics"_s));
    store.connect(u"/other"_s);
    EXPECT_THAT(events.watchedFolders(), ElementsAre(u"/other"_s));
}

TEST_F(LibraryWatcherTest, Where_no_events_can_be_had_refreshing_still_works_and_asks_for_them_again)
{
    events.setAvailable(false);
    files.write(folder, "a.md", "![x](pics/a.png)");
    store.connect(folder);
    EXPECT_EQ(loadsAfter([] { }), 1);
    files.write(folder, "b.md", "# B");
    EXPECT_EQ(loadsAfter([&] { store.refresh(); }), 1);
    EXPECT_EQ(store.sheets.value().size(), 2);

    events.setAvailable(true);
    loadsAfter([&] { store.refresh(); });
    EXPECT_EQ(loadsAfter([&] { events.fire(folder); }), 1);
    events.endUnnoticed(folder);
    EXPECT_EQ(loadsAfter([&] { store.refresh(); }), 2) << "something may have come before the watch did";
    EXPECT_EQ(loadsAfter([&] { events.fire(folder); }), 1);
}

}
}
