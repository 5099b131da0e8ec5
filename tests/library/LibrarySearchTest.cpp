#include "library/LibrarySearch.h"

#include "library/LibraryStore.h"
#include "support/Cases.h"
#include "support/Dice.h"
#include "support/FakeLibraryServices.h"
#include "text/SearchFolding.h"

namespace Quillory {
namespace {

class LibrarySearchTest : public Test {
protected:
    void write(QByteArray const& name, QByteArray const& text) { services.root.write("library/" + name, text); }
    void load()
    {
        store.connect(services.root.path("library"));
        services.executor.settle();
    }
    // Once it is folded.
    QString found(QString const& typed)
    {
        store.setLibraryQuery(typed);
        services.executor.settle();
        return store.libraryResults.value().join(u' ');
    }
    QString selected() const { return store.selectedID.value().value_or(QString()); }

    FakeLibraryServices services;
    LibraryStore store { services.services(), LibraryStore::RestoreFolder::no };
};

TEST_F(LibrarySearchTest, A_sheet_holds_a_query_in_its_title_its_name_or_its_text_as_one_piece)
{
    write("ascii.md", "# Plain\n\n`ls -l`\n");
    write("bad.md", "\xFF");
    write("zoë.md", "Über Straße 각\n");
    write("tmux.quillory.json", R"({"schemaVersion": 1, "title": "tmux", "sections": [{"id": "p", "title": "Panes",
        "entries": [{"id": "s", "title": "Side by side", "text": "The prefix", "shortcuts": [{"steps": [
        {"modifiers": ["control"], "key": "b"}, {"modifiers": [], "key": "%"}]}]}]}]})");
    load();
    forEachCase(u"searches"_s, [&](auto const& row) { EXPECT_EQ(found(row[0].toString()), row[1].toString()); });
}

TEST_F(LibrarySearchTest, Typed_letter_by_letter_over_changing_sheets_it_finds_what_a_plain_search_finds)
{
    Dice dice(3);
    auto const pieces = { u"ab"_s, u"B"_s, u"a"_s, u" "_s, u"é"_s, u"c"_s };
    for (int number = 0; number < 30; ++number)
        write(QByteArray::number(100 + number) + ".md", dice.mixture(pieces, 9).toUtf8());
    load();
    for (int step = 0; step < 600; ++step) {
        auto query = store.libraryQuery.value();
        if (dice.oneIn(3))
            query.chop(1);
        else
            query.insert(dice.below(query.size() + 1), dice.anyOf(pieces));
        if (dice.oneIn(5)) {
            write(QByteArray::number(100 + dice.below(40)) + ".md", dice.mixture(pieces, 9).toUtf8());
            store.reload();
        }
        auto const results = found(query.right(5));
        QStringList expected;
        for (auto const& sheet : store.sheets.value()) {
            auto const text = foldedForSearch(sheet.title + u'\n' + sheet.id + u'\n' + sheet.source);
            if (text.contains(foldedForSearch(query.right(5).trimmed())))
                expected.append(sheet.id);
        }
        ASSERT_EQ(results, expected.join(u' ')) << query.toStdString();
    }
}

TEST_F(LibrarySearchTest, Results_stay_until_texts_are_folded_and_what_is_asked_of_them_waits)
{
    for (auto const* name : { "a", "b", "c" })
        write(QByteArray(name) + ".md", QByteArray("same ") + name);
    load();
    EXPECT_EQ(services.executor.queuedWork(), 0U) << "nothing is folded before it is needed";
    store.setLibraryQuery(u"same B"_s);
    EXPECT_EQ(store.libraryResults.value().join(u' '), u"a.md b.md c.md"_s);
    EXPECT_TRUE(store.acceptLibrarySearch());
    EXPECT_EQ(selected(), u"a.md"_s) << "it is for results that are still to come";
    services.executor.settle();
    EXPECT_EQ(store.libraryResults.value().join(u' '), u"b.md"_s);
    EXPECT_EQ(selected(), u"b.md"_s);
    store.setLibraryQuery(u"same"_s);
    EXPECT_EQ(store.libraryResults.value().size(), 3) << "once folded, a search takes no turn";

    write("d.md", "same d");
    store.reload();
    services.executor.runPosted();
    services.executor.runAndFinishWork(); // the load
    store.selectAdjacentResult(2);
    store.setLibraryQuery(u"d.md"_s);
    services.executor.settle();
    EXPECT_EQ(selected(), u"b.md"_s) << "what was asked of another query's results is not done to these";
    EXPECT_EQ(store.libraryResults.value().join(u' '), u"d.md"_s);
    store.setLibraryQuery(u"same"_s);
    services.root.remove("library");
    load();
    services.root.write("library/e.md", "same e");
    load();
    EXPECT_EQ(store.libraryResults.value().join(u' '), u"e.md"_s) << "a query outlives the folder";
}

TEST_F(LibrarySearchTest, Selections_move_among_the_results_and_stop_at_their_ends)
{
    for (auto const* name : { "a", "b", "c", "d" })
        write(QByteArray(name) + ".md", name == QByteArray("a") ? "other" : "same");
    load();
    found(u"same"_s);
    QStringList ids;
    for (auto const offset : { 1, 1, 5, 1, -1, -9, -1 }) {
        store.selectAdjacentResult(offset);
        ids << selected();
    }
    EXPECT_EQ(ids.join(u' '), u"b.md c.md d.md d.md c.md b.md b.md"_s);
    store.select(u"a.md"_s);
    store.selectAdjacentResult(0);
    EXPECT_EQ(selected(), u"d.md"_s);
    store.librarySearchVisible.assignAs<ReaderView>(true);
    found(u"nowhere"_s);
    EXPECT_FALSE(store.acceptLibrarySearch() || store.selectAdjacentResult(1));
    EXPECT_TRUE(store.librarySearchVisible);
    EXPECT_EQ(selected(), u"d.md"_s);
    found(u"c.md"_s);
    EXPECT_TRUE(store.acceptLibrarySearch());
    EXPECT_EQ(selected(), u"c.md"_s);
    EXPECT_FALSE(store.librarySearchVisible);
}

TEST(FoldedSheetsTest, What_is_kept_is_small_and_is_taken_over_where_texts_are_the_same)
{
    QList<Sheet> sheets;
    for (int number = 0; number < 1000; ++number)
        sheets.append({ .id = QString::number(number), .source = u"Some words of a sheet. "_s.repeated(20) });
    auto const first = FoldedSheets::of(sheets);
    EXPECT_LE(first->byteSize() * 10, 1000 * (20 * 23 + 5 + 8) * 11);
    auto again = sheets;
    again[3].error = u"changed"_s;
    auto const second = FoldedSheets::of(again, first);
    EXPECT_TRUE(second->sheets().isSharedWith(again));
    again.removeFirst();
    again[7].source = u"other"_s;
    auto const third = FoldedSheets::of(again, second);
    EXPECT_THAT(third->holding("other"), ElementsAre(7));
    EXPECT_EQ(third->holding("some words").size(), 998U);
    std::stop_source end;
    end.request_stop();
    EXPECT_EQ(FoldedSheets::of(again, {}, end.get_token()), nullptr);
}

}
}
