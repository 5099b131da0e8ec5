#include "library/LibraryStore.h"

#include "library/LibraryLoad.h"
#include "support/FakeLibraryServices.h"

#include <gmock/gmock.h>

#include <memory>

namespace Quillory {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using testing::ElementsAre;

QString const folder = u"/library"_s;

class LibraryStoreTest : public testing::Test {
protected:
    LibraryStoreTest()
    {
        files.addFolder(folder);
        files.write(folder, "a.md", "# A");
        files.write(folder, "b.md", "# B");
        files.write(folder, "c.md", "# C");
        start();
    }

    void start(LibraryStore::RestoreFolder restore = LibraryStore::RestoreFolder::no)
    {
        store = std::make_unique<LibraryStore>(services.services(), restore);
    }

    void connect()
    {
        store->connect(folder);
        executor.settle();
    }

    void saveAndFollow(QByteArray const& name, QByteArray const& text)
    {
        files.write(folder, name, text);
        events.fire(folder);
        executor.advance(LibraryWatcher::latency + LibraryStore::reloadDebounce);
        executor.settle();
    }

    QStringList titles() const
    {
        QStringList all;
        for (auto const& sheet : store->sheets.value())
            all.append(sheet.title);
        return all;
    }

    FakeLibraryServices services;
    MemoryUserDefaults& defaults = services.defaults;
    FakeFolderBookmarks& bookmarks = services.bookmarks;
    FakeFileSystem& files = services.files;
    ManualExecutor& executor = services.executor;
    FakeFileEvents& events = services.events;
    std::unique_ptr<LibraryStore> store;
};

TEST_F(LibraryStoreTest, A_restored_folder_loads_with_the_last_sheet_selected)
{
    bookmarks.addFolder(folder);
    ASSERT_TRUE(FolderAccess(defaults, bookmarks).remember(folder));
    defaults.setValue(u"lastSheet"_s, u"b.md"_s);
    defaults.forgetWrites();
    start(LibraryStore::RestoreFolder::yes);
    EXPECT_EQ(store->folder.value(), folder);
    EXPECT_FALSE(store->busy);
    executor.settle();
    EXPECT_THAT(titles(), ElementsAre(u"A"_s, u"B"_s, u"C"_s));
    EXPECT_EQ(store->selectedSheet()->title, u"B"_s);
    EXPECT_TRUE(defaults.writes().empty());

    bookmarks.removeFolder(folder);
    start(LibraryStore::RestoreFolder::yes);
    EXPECT_EQ(store->folder.value(), std::nullopt);
    EXPECT_EQ(store->message.value(), u"Folder access needs to be restored. Choose the folder again."_s);
}

TEST_F(LibraryStoreTest, The_adjacent_sheet_is_never_past_an_end)
{
    store->selectAdjacent(1);
    EXPECT_EQ(store->selectedID.value(), std::nullopt);
    connect();
    for (auto const& [offset, expected] : { std::pair(-1, u"a.md"_s), std::pair(1, u"b.md"_s), std::pair(1, u"c.md"_s),
             std::pair(1, u"c.md"_s), std::pair(-1, u"b.md"_s) }) {
        store->selectAdjacent(offset);
        EXPECT_EQ(store->selectedID.value(), expected);
    }
    store->select(u"gone.md"_s);
    store->selectAdjacent(1);
    EXPECT_EQ(store->selectedID.value(), u"a.md"_s);
}

TEST_F(LibraryStoreTest, The_last_readable_version_outlives_any_number_of_bad_saves)
{
    connect();
    auto const good = store->sheets.value()[0];
    for (auto const* bad : { "\xFF", "\xFE", "\xFF" }) {
        saveAndFollow("a.md", bad);
        auto const& sheet = store->sheets.value()[0];
        EXPECT_EQ(sheet.source, good.source);
        EXPECT_EQ(sheet.parsed, good.parsed);
        EXPECT_EQ(sheet.title, u"A"_s);
        EXPECT_EQ(sheet.error, u"This sheet is not valid UTF-8. Save it as UTF-8 in your editor."_s);
    }
    saveAndFollow("a.md", "# A");
    EXPECT_EQ(store->sheets.value()[0], good);

    // An empty text is no content to keep, and another folder's is not kept at all.
    saveAndFollow("b.md", "");
    saveAndFollow("b.md", "\xFF");
    EXPECT_EQ(store->sheets.value()[1].title, u"b"_s);
    EXPECT_FALSE(store->sheets.value()[1].parsed);
    saveAndFollow("a.md", "\xFF");
    connect();
    EXPECT_EQ(store->sheets.value()[0].title, u"a"_s);
}

TEST_F(LibraryStoreTest, Observers_are_told_of_real_changes_only)
{
    connect();
    int sheetChanges = 0;
    int pinCalls = 0;
    auto const observation = store->sheets.addNotifier([&] { ++sheetChanges; });
    store->pinsChanged = [&] { ++pinCalls; };
    saveAndFollow("a.md", "# A");
    EXPECT_EQ(sheetChanges, 0);
    EXPECT_EQ(pinCalls, 1);
    saveAndFollow("a.md", "# Other");
    EXPECT_EQ(sheetChanges, 1);
}

TEST_F(LibraryStoreTest, A_change_of_folder_forgets_the_positions_and_takes_nothing_of_the_old_one)
{
    connect();
    store->scrollPositions.insert(u"a.md"_s, { 0, 5 });
    files.write(u"/other"_s, "z.md", "# Z");
    store->connect(u"/other"_s);
    EXPECT_TRUE(store->scrollPositions.isEmpty());
    EXPECT_THAT(events.watchedFolders(), ElementsAre(u"/other"_s));
    executor.settle();
    store->applyLoadedSheets({}, 1);
    EXPECT_THAT(titles(), ElementsAre(u"Z"_s));
}

}
}
