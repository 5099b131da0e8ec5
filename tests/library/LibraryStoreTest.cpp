#include "library/LibraryStore.h"

#include "support/Cases.h"
#include "support/FakeLibraryServices.h"

#include <cerrno>

namespace Quillory {
namespace {

constexpr std::uint64_t window = 7;

class LibraryStoreTest : public Test {
protected:
    LibraryStoreTest()
    {
        for (auto const* name : { "library/a.md", "library/b.md", "library/c.md", "other/a.md", "other/b.md" })
            services.root.write(name, "# " + QByteArray(name).right(4).first(1).toUpper());
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
    void fail(QString const& description)
    {
        services.fileOpener.answer(std::unexpected(FileOpener::Failure { description }));
    }
    QJsonObject storedPins() const { return services.defaults.get<QJsonObject>(u"pinnedSheets"_s).value(); }

    FakeLibraryServices services;
    QString const folder = services.root.path("library");
    QString const other = services.root.path("other");
    std::unique_ptr<LibraryStore> store;
};

TEST_F(LibraryStoreTest, Preferences_are_read_written_when_they_are_set_and_missing_when_damaged)
{
    forEachCase(u"preferences"_s, [this](auto const& row) {
        for (int column = 0; column < 3; ++column) {
            auto const stored = row[column];
            services.defaults.setValue(
                QStringList { u"textSize"_s, u"learningModeEnabled"_s, u"modifierGesture"_s }[column],
                stored.isBool()         ? UserDefaults::Value(stored.toBool())
                    : stored.isDouble() ? UserDefaults::Value(stored.toDouble())
                                        : UserDefaults::Value(stored.toString()));
        }
        start();
        EXPECT_EQ(store->textSize.value(), row[3].toDouble());
        EXPECT_EQ(store->learningModeEnabled.value(), row[4].toBool());
        EXPECT_EQ(rawValue(store->modifierGesture), row[5].toString());
    });
    QStringList gestures;
    store->modifierGestureChanged = [&] {
        gestures << rawValue(store->modifierGesture) << *services.defaults.get<QString>(u"modifierGesture"_s);
    };
    services.defaults.writes.clear();
    for (int repeat = 0; repeat < 2; ++repeat) {
        store->setTextSize(40);
        store->setLearningModeEnabled(false);
        store->setModifierGesture(ModifierGesture::option);
        store->setKeyNames(KeyNames::words);
    }
    EXPECT_EQ(store->textSize.value(), 40);
    EXPECT_EQ(gestures, u"option option option option"_s.split(u' '));
    EXPECT_EQ(services.defaults.writes.join(u' '),
        u"textSize learningModeEnabled modifierGesture keyNames textSize modifierGesture keyNames"_s);
    for (auto const& [stored, expected] :
        { std::pair(u"words"_s, KeyNames::words), { u"runes"_s, KeyNames::symbols } }) {
        services.defaults.setValue(u"keyNames"_s, stored);
        start();
        EXPECT_EQ(store->keyNames.value(), expected);
    }
}

TEST_F(LibraryStoreTest, A_copy_says_so_for_a_while_and_only_when_it_took)
{
    EXPECT_TRUE(store->copy(u"ls"_s));
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
    store->copy(u"ls \u202e"_s);
    EXPECT_EQ(store->copyFeedback.value(), u"Copied, with hidden characters"_s);
    store->copy(u"rm"_s);
    store->setLearningModeEnabled(true);
    EXPECT_FALSE(store->copy(u"mv"_s));
    EXPECT_EQ(store->copyFeedback.value(), QString());
    EXPECT_EQ(services.clipboard.text(Clipboard::Pasteboard::general), u"rm"_s);
    services.executor.settle();
    store.reset(); // with a feedback that is still to go
    EXPECT_EQ(services.executor.pendingTimers(), 0U);
}

TEST_F(LibraryStoreTest, Pins_are_kept_per_folder_and_come_back_with_their_files)
{
    store->togglePin(u"a.md"_s); // without a folder there is nothing to pin
    connect();
    store->togglePin(u"missing.md"_s);
    EXPECT_FALSE(services.defaults.value(u"pinnedSheets"_s));
    int calls = 0;
    store->pinsChanged = [&] { ++calls; };
    for (auto const& id : { u"c.md"_s, u"a.md"_s, u"b.md"_s, u"a.md"_s, u"a.md"_s })
        store->togglePin(id);
    EXPECT_EQ(calls, 5);

    services.root.remove("library/b.md");
    connect(other);
    EXPECT_THAT(store->pinnedIDs.value(), IsEmpty());
    store->togglePin(u"b.md"_s);
    connect(folder + u"/../other/"_s);
    EXPECT_THAT(store->pinnedIDs.value(), ElementsAre(u"b.md"_s));
    connect();
    EXPECT_THAT(store->pinnedIDs.value(), ElementsAre(u"c.md"_s, u"b.md"_s, u"a.md"_s));
    EXPECT_THAT(store->pinnedSheets(), ElementsAre(Field(&Sheet::id, u"c.md"_s), Field(&Sheet::id, u"a.md"_s)));
    EXPECT_EQ(storedPins(),
        (QJsonObject {
            { folder, QJsonArray { u"c.md"_s, u"b.md"_s, u"a.md"_s } }, { other, QJsonArray { u"b.md"_s } } }));
}

TEST_F(LibraryStoreTest, A_damaged_list_of_pins_never_stops_the_others)
{
    services.defaults.setValue(u"pinnedSheets"_s,
        QJsonObject { { folder, QJsonArray { u"a.md"_s, u"b.md"_s, u"a.md"_s } }, { u"/1"_s, 3 },
            { u"/2"_s, QJsonArray { u"x"_s, 1 } }, { u"/3"_s, u"x"_s }, { u"/4"_s, QJsonArray { u"y"_s } } });
    connect();
    store->togglePin(u"a.md"_s); // every one of it goes
    EXPECT_EQ(storedPins(), (QJsonObject { { folder, QJsonArray { u"b.md"_s } }, { u"/4"_s, QJsonArray { u"y"_s } } }));
    services.defaults.setValue(u"pinnedSheets"_s, 3.0);
    connect();
    EXPECT_THAT(store->pinnedIDs.value(), IsEmpty());
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

    services.bookmarks.bookmarkError = SystemError(EIO);
    store->chooseFolder(window, services.openPanels.openPanel());
    services.openPanels.choose(other);
    EXPECT_EQ(store->folder.value(), folder);
    EXPECT_EQ(
        store->message.value(), u"Could not remember folder access: "_s + SystemError(EIO).localizedDescription());
    store->chooseFolder(window);
    services.openPanels.dismiss();
    EXPECT_EQ(services.openPanels.calls.join(u' '), u"begin orderOut begin orderOut begin orderOut"_s);

    services.defaults.setValue(u"lastSheet"_s, u"b.md"_s);
    services.defaults.writes.clear();
    start(LibraryStore::RestoreFolder::yes);
    EXPECT_EQ(store->folder.value(), folder);
    services.executor.settle();
    EXPECT_EQ(store->selectedSheet()->title, u"B"_s);
    EXPECT_THAT(services.defaults.writes, IsEmpty());

    services.root.remove("library");
    start(LibraryStore::RestoreFolder::yes);
    EXPECT_EQ(store->folder.value(), std::nullopt);
    EXPECT_EQ(store->message.value(), u"Folder access needs to be restored. Choose the folder again."_s);
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
    store->shutdown();
    EXPECT_FALSE(store->filePanel.value());
    EXPECT_EQ(services.openPanels.calls.join(u' '), u"begin cancel orderOut"_s);
    store->chooseFolder(window);
    services.openPanels.failure = u"no portal"_s;
    services.openPanels.dismiss();
    EXPECT_EQ(store->message.value(), u"Could not open the file dialog: no portal"_s);
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
    fail(u"no"_s);
    EXPECT_EQ(store->message.value(), u"Could not open a.md in its default application."_s);
    store->openLink(u"https://example.org/"_s + QString(300, u'a'));
    fail(u"no"_s);
    EXPECT_TRUE(store->message.value()->endsWith(u"aaa… in the browser."_s)) << "the end of a sentence is read";

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
    fail(u"No such program"_s);
    saveAndFollow("a.md", "# A again"); // a load that succeeds clears only what a load said
    EXPECT_EQ(store->message.value(), u"Could not open c.md: No such program"_s);
    store->message.assignAs<MessageBar>(std::nullopt);
    store->openSheet(u"a.md"_s);
    services.executor.advance(SheetFiles::launchAnswerTime + 1ms);
    fail(u"the editor has ended"_s);
    EXPECT_EQ(store->message.value(), std::nullopt);

    chooseApplication();
    store->openSheet(u"a.md"_s);
    store->openSheetWith(u"a.md"_s, window);
    connect(other);
    fail(u"late"_s);
    EXPECT_EQ(store->message.value(), std::nullopt);
    opener.calls.clear();
    services.openPanels.choose(u"/applications/late.desktop"_s);
    store->openSheetWith(u"a.md"_s, window);
    services.root.remove("other/a.md");
    store->refresh();
    services.executor.settle();
    services.openPanels.choose(u"/applications/later.desktop"_s);
    EXPECT_THAT(opener.calls, IsEmpty()) << "an application that was chosen too late is not started";
    store.reset();
    fail(u"too late"_s);
}

TEST_F(LibraryStoreTest, The_adjacent_sheet_is_never_past_an_end)
{
    store->selectAdjacent(1);
    EXPECT_EQ(store->selectedID.value(), std::nullopt);
    connect();
    QStringList ids;
    for (auto const offset : { -1, 1, 1, 1, -1, 0, 1 }) {
        if (offset == 0)
            store->select(u"gone.md"_s);
        else
            store->selectAdjacent(offset);
        ids << *store->selectedID.value();
    }
    EXPECT_EQ(ids, u"a.md b.md c.md c.md b.md gone.md a.md"_s.split(u' '));
}

TEST_F(LibraryStoreTest, The_last_readable_version_outlives_any_number_of_bad_saves)
{
    connect();
    auto const good = store->sheets.value()[0];
    for (auto const* bad : { "\xFF", "\xFE", "\xFF" }) {
        saveAndFollow("a.md", bad);
        auto kept = good;
        kept.error = u"This sheet is not valid UTF-8. Save it as UTF-8 in your editor."_s;
        EXPECT_EQ(store->sheets.value()[0], kept);
    }
    saveAndFollow("a.md", "# A");
    EXPECT_EQ(store->sheets.value()[0], good);

    // An empty text is no content to keep, and another folder's is not kept at all.
    saveAndFollow("b.md", "");
    saveAndFollow("b.md", "\xFF");
    EXPECT_FALSE(store->sheets.value()[1].parsed);
    saveAndFollow("a.md", "\xFF");
    connect();
    EXPECT_EQ(store->sheets.value()[0].title, u"a"_s);
}

TEST_F(LibraryStoreTest, What_is_wrong_with_the_settings_is_told_in_a_sentence_with_the_file)
{
    forEachCase(u"trouble"_s, [this](auto const& row) {
        services.defaults.tell(
            { static_cast<UserDefaults::Trouble::Kind>(row[0].toInt()), u"/x"_s, row[1].toString() });
        EXPECT_EQ(store->message.value(), row[2].toString());
    });
}

TEST_F(LibraryStoreTest, Observers_are_told_of_real_changes_only_and_another_folder_takes_nothing_along)
{
    connect();
    QStringList told;
    auto const observation = store->sheets.addNotifier([&] { told << u"sheets"_s; });
    store->pinsChanged = [&] { told << u"pins"_s; };
    saveAndFollow("a.md", "# A");
    EXPECT_THAT(told, ElementsAre(u"pins"_s));
    saveAndFollow("a.md", "# Other");
    EXPECT_THAT(told, ElementsAre(u"pins"_s, u"sheets"_s, u"pins"_s));

    store->scrollPositions.insert(u"a.md"_s, { 0, 5 });
    connect(other);
    EXPECT_TRUE(store->scrollPositions.isEmpty());
    store->applyLoadedSheets({}, 1);
    EXPECT_EQ(store->sheets.value().size(), 2);
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

    EXPECT_EQ(loadsAfter([&] { services.events.fire(folder + u"/pics/deep"_s); }), 1);
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
