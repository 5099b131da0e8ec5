#include "library/LibraryStore.h"

#include "support/FakeLibraryServices.h"
#include "support/Test.h"

#include <cerrno>

namespace Quillory {
namespace {

constexpr std::uint64_t window = 7;

class LibraryStoreTest : public Test {
protected:
    LibraryStoreTest()
    {
        for (QByteArray const title : { "A", "B", "C" }) {
            for (auto const* name : { "library/", "other/" })
                services.root.write(name + title.toLower() + ".md", "# " + title);
        }
        services.openPanels.showWindow(window);
        start();
    }

    void start(LibraryStore::RestoreFolder restore = LibraryStore::RestoreFolder::no)
    {
        store = std::make_unique<LibraryStore>(services.services(), restore);
    }
    void connect(std::optional<QString> const& path = {})
    {
        store->connect(path.value_or(folder));
        services.executor.settle();
    }
    void saveAndFollow(QByteArray const& name, QByteArray const& text)
    {
        services.root.write("library/" + name, text);
        services.events.fire(folder);
        pass();
    }
    void pass()
    {
        services.executor.advance(LibraryWatcher::latency + LibraryStore::reloadDebounce);
        services.executor.settle();
    }
    QStringList titles() const
    {
        QStringList all;
        for (auto const& sheet : store->sheets.value())
            all.append(sheet.title);
        return all;
    }
    void expectStoredPins(QJsonObject const& pins) const
    {
        EXPECT_EQ(services.defaults.get<QJsonObject>(u"pinnedSheets"_s), pins);
    }

    FakeLibraryServices services;
    QString const folder = services.root.path("library");
    QString const other = services.root.path("other");
    std::unique_ptr<LibraryStore> store;
};

TEST_F(LibraryStoreTest, Stored_preferences_are_read_and_what_is_damaged_counts_as_missing)
{
    using Value = UserDefaults::Value;
    using Case = std::tuple<Value, Value, Value, double, bool, ModifierGesture>;
    for (auto const& [storedSize, storedLearning, storedGesture, size, learning, gesture] :
        { Case { 0.0, true, u"shift"_s, 16, true, ModifierGesture::shift },
            Case { 40.0, false, u"option"_s, 32, false, ModifierGesture::option },
            Case { 5.0, u"true"_s, u"Shift"_s, 11, false, ModifierGesture::off },
            Case { u"20"_s, 1.0, true, 16, false, ModifierGesture::off },
            Case { 20.5, true, u"off"_s, 20.5, true, ModifierGesture::off } }) {
        services.defaults.setValue(u"textSize"_s, storedSize);
        services.defaults.setValue(u"learningModeEnabled"_s, storedLearning);
        services.defaults.setValue(u"modifierGesture"_s, storedGesture);
        start();
        EXPECT_EQ(store->textSize.value(), size);
        EXPECT_EQ(store->learningModeEnabled.value(), learning);
        EXPECT_EQ(store->modifierGesture.value(), gesture);
    }
}

TEST_F(LibraryStoreTest, Each_setter_writes_as_often_as_it_should)
{
    QStringList gestures;
    store->modifierGestureChanged = [&] {
        gestures << rawValue(store->modifierGesture) << *services.defaults.get<QString>(u"modifierGesture"_s);
    };
    for (int repeat = 0; repeat < 2; ++repeat) {
        store->setTextSize(40);
        store->setLearningModeEnabled(true);
        store->setModifierGesture(ModifierGesture::option);
    }
    EXPECT_EQ(store->textSize.value(), 40);
    EXPECT_THAT(gestures, ElementsAre(u"option"_s, u"option"_s, u"option"_s, u"option"_s));
    EXPECT_THAT(services.defaults.writes,
        ElementsAre(
            u"textSize"_s, u"learningModeEnabled"_s, u"modifierGesture"_s, u"textSize"_s, u"modifierGesture"_s));
}

TEST_F(LibraryStoreTest, A_copy_says_so_for_a_while_and_only_when_it_took)
{
    auto const& onClipboard = [&] { return services.clipboard.text(Clipboard::Pasteboard::general); };
    EXPECT_TRUE(store->copy(u"ls"_s));
    EXPECT_EQ(onClipboard(), u"ls"_s);
    EXPECT_EQ(store->copyFeedback.value(), u"Copied"_s);
    services.executor.advance(1499ms);
    EXPECT_EQ(store->copyFeedback.value(), u"Copied"_s);
    services.executor.advance(1ms);
    EXPECT_EQ(store->copyFeedback.value(), QString());

    services.clipboard.setRefuses(true);
    EXPECT_FALSE(store->copy(u"cd"_s));
    services.executor.advance(1h);
    EXPECT_EQ(store->copyFeedback.value(), u"Copy failed"_s);
    EXPECT_THAT(services.announcements.announced, ElementsAre(std::pair(u"Copied"_s, Announcements::Priority::medium)));

    services.clipboard.setRefuses(false);
    store->copy(u"rm"_s);
    store->setLearningModeEnabled(true);
    EXPECT_EQ(store->copyFeedback.value(), QString());
    EXPECT_FALSE(store->copy(u"mv"_s));
    EXPECT_EQ(store->copyFeedback.value(), QString());
    EXPECT_EQ(onClipboard(), u"rm"_s);
    services.executor.settle();
    store.reset(); // with a feedback that is still to go
    EXPECT_EQ(services.executor.pendingTimers(), 0U);
}

TEST_F(LibraryStoreTest, A_request_to_find_counts_also_when_it_is_repeated)
{
    using Direction = LibraryStore::FindDirection;
    std::vector<bool> backwards;
    auto const raised = store->findRequest.addNotifier([&] { backwards.push_back(store->findBackwards.value()); });
    for (auto const direction : { Direction::backwards, Direction::backwards, Direction::forwards })
        store->requestFind(direction);
    EXPECT_THAT(backwards, ElementsAre(true, true, false));
}

TEST_F(LibraryStoreTest, Pins_are_kept_per_folder_and_come_back_with_their_files)
{
    store->togglePin(u"a.md"_s); // without a folder there is nothing to pin
    EXPECT_THAT(services.defaults.writes, IsEmpty());
    connect();
    services.defaults.writes.clear();
    store->togglePin(u"missing.md"_s);
    EXPECT_THAT(services.defaults.writes, IsEmpty());
    int calls = 0;
    store->pinsChanged = [&] { ++calls; };
    for (auto const& id : { u"c.md"_s, u"a.md"_s, u"b.md"_s, u"a.md"_s, u"a.md"_s })
        store->togglePin(id);
    EXPECT_EQ(calls, 5);
    EXPECT_THAT(store->pinnedIDs.value(), ElementsAre(u"c.md"_s, u"b.md"_s, u"a.md"_s));

    services.root.remove("library/b.md");
    connect(other);
    EXPECT_THAT(store->pinnedIDs.value(), IsEmpty());
    store->togglePin(u"b.md"_s);
    connect(folder + u"/../other/"_s);
    EXPECT_THAT(store->pinnedIDs.value(), ElementsAre(u"b.md"_s));
    connect();
    EXPECT_THAT(store->pinnedIDs.value(), ElementsAre(u"c.md"_s, u"b.md"_s, u"a.md"_s));
    QStringList shown;
    for (auto const& sheet : store->pinnedSheets())
        shown << sheet.id;
    EXPECT_THAT(shown, ElementsAre(u"c.md"_s, u"a.md"_s));
    expectStoredPins(
        { { folder, QJsonArray { u"c.md"_s, u"b.md"_s, u"a.md"_s } }, { other, QJsonArray { u"b.md"_s } } });
}

TEST_F(LibraryStoreTest, A_damaged_list_of_pins_never_stops_the_others)
{
    services.defaults.setValue(u"pinnedSheets"_s,
        QJsonObject { { folder, QJsonArray { u"a.md"_s, u"b.md"_s, u"a.md"_s } }, { u"/1"_s, 3 },
            { u"/2"_s, QJsonArray { u"x"_s, 1 } }, { u"/3"_s, u"x"_s }, { u"/4"_s, QJsonArray { u"y"_s } } });
    connect();
    store->togglePin(u"a.md"_s); // every one of it goes
    EXPECT_THAT(store->pinnedIDs.value(), ElementsAre(u"b.md"_s));
    expectStoredPins({ { folder, QJsonArray { u"b.md"_s } }, { u"/4"_s, QJsonArray { u"y"_s } } });
    for (auto const& damaged : { UserDefaults::Value(3.0), UserDefaults::Value(QByteArray("x")) }) {
        services.defaults.setValue(u"pinnedSheets"_s, damaged);
        connect();
        EXPECT_THAT(store->pinnedIDs.value(), IsEmpty());
    }
}

TEST_F(LibraryStoreTest, A_chosen_folder_is_remembered_and_connected)
{
    bool wasOpenBefore = true;
    store->filePickerWillPresent = [&] { wasOpenBefore = services.openPanels.isOpen(); };
    store->chooseFolder(window);
    EXPECT_FALSE(wasOpenBefore);
    EXPECT_TRUE(store->filePanel.value());
    EXPECT_THAT(services.workspace.ownActivations, ElementsAre(window));
    EXPECT_EQ(services.openPanels.settings(),
        (OpenPanelSettings { .canChooseDirectories = true,
            .canChooseFiles = false,
            .canCreateDirectories = true,
            .prompt = u"Choose folder"_s,
            .message = u"Choose a folder containing your cheat sheets."_s }));
    services.openPanels.choose(folder);
    EXPECT_FALSE(store->filePanel.value());
    EXPECT_EQ(store->folder.value(), folder);
    EXPECT_TRUE(services.defaults.get<QByteArray>(u"libraryBookmark"_s));

    services.bookmarks.bookmarkError = SystemError(EIO);
    store->chooseFolder(window, services.openPanels.openPanel());
    services.openPanels.choose(other);
    EXPECT_EQ(store->folder.value(), folder);
    EXPECT_EQ(
        store->message.value(), u"Could not remember folder access: "_s + SystemError(EIO).localizedDescription());
    store->chooseFolder(window);
    services.openPanels.dismiss();
    EXPECT_THAT(services.openPanels.calls,
        ElementsAre(u"begin"_s, u"orderOut"_s, u"begin"_s, u"orderOut"_s, u"begin"_s, u"orderOut"_s));
}

TEST_F(LibraryStoreTest, One_panel_at_a_time_over_a_window_that_can_have_one)
{
    connect();
    store->chooseFolder(std::nullopt);
    store->chooseFolder(window + 1);
    store->openSheetWith(u"a.md"_s, window + 1);
    store->openSheetWith(u"missing.md"_s, window);
    EXPECT_FALSE(store->filePanel.value());
    store->chooseFolder(window);
    store->chooseFolder(window);
    store->openSheetWith(u"a.md"_s, window);
    EXPECT_THAT(services.openPanels.calls, ElementsAre(u"begin"_s));
    store->shutdown();
    EXPECT_FALSE(store->filePanel.value());
    EXPECT_THAT(services.openPanels.calls, ElementsAre(u"begin"_s, u"cancel"_s, u"orderOut"_s));
}

TEST_F(LibraryStoreTest, Files_are_handed_out_and_a_refusal_is_told_in_its_own_library_only)
{
    auto& opener = services.fileOpener;
    store->openSheet(u"a.md"_s); // without a folder
    connect();
    store->openSheet(u"missing.md"_s);
    store->openSheet();
    store->revealSheet(u"b.md"_s);
    EXPECT_THAT(opener.calls, ElementsAre(u"open "_s + folder + u"/a.md"_s, u"reveal "_s + folder + u"/b.md"_s));
    opener.answer(std::unexpected(FileOpener::Failure { u"no"_s }));
    EXPECT_EQ(store->message.value(), u"Could not open a.md in its default application."_s);

    auto const chooseApplication = [&] {
        store->openSheetWith(u"c.md"_s, window);
        services.openPanels.choose(u"/applications/vim.desktop"_s);
    };
    chooseApplication();
    EXPECT_EQ(services.openPanels.settings(),
        (OpenPanelSettings { .allowedContentType = OpenPanelSettings::ContentType::application,
            .directoryURL = u"/applications"_s,
            .prompt = u"Open"_s,
            .message = u"Choose an application to open c.md."_s }));
    EXPECT_EQ(opener.calls.last(), u"open "_s + folder + u"/c.md with /applications/vim.desktop"_s);
    opener.answer(std::unexpected(FileOpener::Failure { u"No such program"_s }));
    EXPECT_EQ(store->message.value(), u"Could not open c.md: No such program"_s);
    saveAndFollow("a.md", "# A again"); // a load that succeeds clears only what a load said
    EXPECT_EQ(store->message.value(), u"Could not open c.md: No such program"_s);
    store->message.assignAs<MessageBar>(std::nullopt);
    store->openSheet(u"a.md"_s);
    services.executor.advance(SheetFiles::launchAnswerTime + 1ms);
    opener.answer(std::unexpected(FileOpener::Failure { u"the editor has ended"_s }));
    EXPECT_EQ(store->message.value(), std::nullopt);
    chooseApplication();
    store->openSheet(u"a.md"_s);
    connect(other);
    opener.answer(std::unexpected(FileOpener::Failure { u"late"_s }));
    EXPECT_EQ(store->message.value(), std::nullopt);
    store.reset();
    opener.answer(std::unexpected(FileOpener::Failure { u"too late"_s }));
}

TEST_F(LibraryStoreTest, An_application_that_was_chosen_too_late_is_not_started)
{
    connect();
    store->openSheetWith(u"a.md"_s, window);
    connect(other);
    services.openPanels.choose(u"/applications/vim.desktop"_s);
    store->openSheetWith(u"a.md"_s, window);
    services.root.remove("other/a.md");
    store->refresh();
    services.executor.settle();
    services.openPanels.choose(u"/applications/vim.desktop"_s);
    EXPECT_THAT(services.fileOpener.calls, IsEmpty());
}

TEST_F(LibraryStoreTest, A_restored_folder_loads_with_the_last_sheet_selected)
{
    ASSERT_TRUE(FolderAccess(services.defaults, services.bookmarks).remember(folder));
    services.defaults.setValue(u"lastSheet"_s, u"b.md"_s);
    services.defaults.writes.clear();
    start(LibraryStore::RestoreFolder::yes);
    EXPECT_EQ(store->folder.value(), folder);
    EXPECT_FALSE(store->busy);
    services.executor.settle();
    EXPECT_THAT(titles(), ElementsAre(u"A"_s, u"B"_s, u"C"_s));
    EXPECT_EQ(store->selectedSheet()->title, u"B"_s);
    EXPECT_THAT(services.defaults.writes, IsEmpty());

    services.root.remove("library");
    start(LibraryStore::RestoreFolder::yes);
    EXPECT_EQ(store->folder.value(), std::nullopt);
    EXPECT_EQ(store->message.value(), u"Folder access needs to be restored. Choose the folder again."_s);
}

TEST_F(LibraryStoreTest, The_adjacent_sheet_is_never_past_an_end)
{
    store->selectAdjacent(1);
    EXPECT_EQ(store->selectedID.value(), std::nullopt);
    connect();
    QStringList ids;
    for (auto const offset : { -1, 1, 1, 1, -1 }) {
        store->selectAdjacent(offset);
        ids << *store->selectedID.value();
    }
    store->select(u"gone.md"_s);
    store->selectAdjacent(1);
    ids << *store->selectedID.value();
    EXPECT_EQ(ids, u"a.md b.md c.md c.md b.md a.md"_s.split(u' '));
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

TEST_F(LibraryStoreTest, What_is_wrong_with_the_settings_is_told_in_a_sentence_with_the_file)
{
    using Kind = UserDefaults::Trouble::Kind;
    for (auto const& [trouble, sentence] : {
             std::pair(UserDefaults::Trouble { Kind::setAside, u"/x.damaged-1"_s },
                 u"The settings file was damaged and has been set aside as /x.damaged-1."_s),
             std::pair(UserDefaults::Trouble { Kind::unreadable, u"/x"_s, u"no"_s },
                 u"The settings could not be read from /x: no"_s),
             std::pair(UserDefaults::Trouble { Kind::unwritable, u"/x"_s, u"full"_s },
                 u"The settings could not be written to /x: full"_s),
         }) {
        services.defaults.tell(trouble);
        EXPECT_EQ(store->message.value(), sentence);
    }
}

TEST_F(LibraryStoreTest, Observers_are_told_of_real_changes_only)
{
    connect();
    QStringList told;
    auto const observation = store->sheets.addNotifier([&] { told << u"sheets"_s; });
    store->pinsChanged = [&] { told << u"pins"_s; };
    saveAndFollow("a.md", "# A");
    EXPECT_THAT(told, ElementsAre(u"pins"_s));
    saveAndFollow("a.md", "# Other");
    EXPECT_THAT(told, ElementsAre(u"pins"_s, u"sheets"_s, u"pins"_s));
}

TEST_F(LibraryStoreTest, A_change_of_folder_forgets_the_positions_and_takes_nothing_of_the_old_one)
{
    connect();
    store->scrollPositions.insert(u"a.md"_s, { 0, 5 });
    services.root.write("other/z.md", "# Z");
    store->connect(other);
    EXPECT_TRUE(store->scrollPositions.isEmpty());
    EXPECT_THAT(services.events.watchedFolders(), ElementsAre(other));
    services.executor.settle();
    store->applyLoadedSheets({}, 1);
    EXPECT_THAT(titles(), ElementsAre(u"A"_s, u"B"_s, u"C"_s, u"Z"_s));
}

class LibraryWatcherTest : public LibraryStoreTest {
protected:
    // How many loads it took until all was quiet.
    int loadsAfter(std::function<void()> const& change)
    {
        int loads = 0;
        services.files.before = [&](auto step, auto const&) {
            loads += step == FaultyFileSystem::Step::openFolder ? 1 : 0;
            return 0;
        };
        change();
        for (int round = 0; round < 5; ++round)
            pass();
        services.files.before = nullptr;
        return loads;
    }
};

TEST_F(LibraryWatcherTest, Folders_are_watched_as_long_as_sheets_take_pictures_from_them)
{
    services.root.write("library/a.md", "![x](pics/deep/a.png) ![y](../outside/b.png) ![z](c.png)");
    store->connect(folder);
    // What came before the watches did is found by one load more.
    EXPECT_EQ(loadsAfter([] { }), 2);
    EXPECT_THAT(
        services.events.watchedFolders(), UnorderedElementsAre(folder, folder + u"/pics"_s, folder + u"/pics/deep"_s));

    EXPECT_EQ(loadsAfter([&] {
        for (int change = 0; change < 10; ++change) {
            services.events.fire(folder);
            services.events.fire(folder + u"/pics/deep"_s);
        }
    }),
        1);
    services.root.write("library/a.md", "![x](pics/a.png)");
    EXPECT_EQ(loadsAfter([&] { services.events.fire(folder); }), 1);
    EXPECT_THAT(services.events.watchedFolders(), UnorderedElementsAre(folder, folder + u"/pics"_s));
    store->connect(other);
    EXPECT_THAT(services.events.watchedFolders(), ElementsAre(other));
}

TEST_F(LibraryWatcherTest, Where_no_events_can_be_had_refreshing_still_works_and_asks_for_them_again)
{
    services.events.setAvailable(false);
    store->connect(folder);
    EXPECT_EQ(loadsAfter([&] { store->refresh(); }), 1);
    services.events.setAvailable(true);
    loadsAfter([&] { store->refresh(); });
    EXPECT_EQ(loadsAfter([&] { services.events.fire(folder); }), 1);
    services.events.endUnnoticed(folder);
    EXPECT_EQ(loadsAfter([&] { store->refresh(); }), 2) << "something may have come before the watch did";
    EXPECT_EQ(loadsAfter([&] { services.events.fire(folder); }), 1);
}

}
}
