#include "library/LibraryLoad.h"

#include "library/LibraryError.h"
#include "linux/qt/QtPictureDecoder.h"
#include "support/FaultyFileSystem.h"
#include "support/TemporaryFolder.h"
#include "support/Test.h"

#include <atomic>
#include <cerrno>

namespace Quillory {
namespace {

using Step = FaultyFileSystem::Step;

QByteArray const structured
    = R"({"schemaVersion":1,"title":" Keys ","sections":[{"id":"a","title":"A","entries":[]}]})";

class LibraryLoadTest : public Test {
protected:
    QList<Sheet> load(QList<Sheet> const& previous = {}) const
    {
        return loadLibrary(files, pictures, root.path(), previous).value();
    }

    QStringList ids() const
    {
        QStringList all;
        for (auto const& sheet : load())
            all.append(sheet.id);
        return all;
    }

    // The one sheet of a folder that holds this file alone.
    Sheet only(QByteArray const& contents, QByteArray const& name = "x.md") const
    {
        root.write(name, contents);
        auto const sheets = load();
        EXPECT_EQ(sheets.size(), 1);
        return sheets.value(0);
    }

    // What another program does between the look at a file and its reading, or what that fails with.
    void beforeReading(std::function<int()> fault, Step step = Step::read)
    {
        files.before = [fault = std::move(fault), step](Step at, auto const&) { return at == step ? fault() : 0; };
    }

    TemporaryFolder root;
    FaultyFileSystem files;
    QtPictureDecoder pictures;
};

QString systemText(int error)
{
    return SystemError(error).localizedDescription();
}

TEST_F(LibraryLoadTest, What_counts_as_a_sheet_is_told_by_the_name_in_any_case)
{
    for (auto const* name : { "a.md", "README.MD", "KEYS.QUILLORY.JSON", "notes.txt.md", "b.markdown", "c.txt",
             "d.json", "notes.md.txt", "md", "e.md~", ".hidden.md", ".quillory.json", "x.quillory.json.md" })
        root.write(name, structured);
    EXPECT_THAT(ids(),
        ElementsAre(u"a.md"_s, u"KEYS.QUILLORY.JSON"_s, u"notes.txt.md"_s, u"README.MD"_s, u"x.quillory.json.md"_s));
}

TEST_F(LibraryLoadTest, Sheets_stand_in_the_order_of_scalars_of_the_lowered_names)
{
    for (auto const* name :
        { "b.md", "2.md", "10.md", "a.md", "A.md", "\uFF5E.md", "\U0001F600.md", "\u00E9.md", "e\u0301.md" })
        root.write(name, "");
    EXPECT_THAT(ids(),
        ElementsAre(u"10.md"_s, u"2.md"_s, u"A.md"_s, u"a.md"_s, u"b.md"_s, u"e\u0301.md"_s, u"\u00E9.md"_s,
            u"\uFF5E.md"_s, u"\U0001F600.md"_s));
}

TEST_F(LibraryLoadTest, Only_regular_files_are_sheets)
{
    root.makeFolder("folder.md");
    root.write("target", "");
    root.link("link.md", "target");
    root.makeFifo("fifo.md");
    root.write("becomes a fifo.md", "");
    beforeReading([this] {
        root.remove("becomes a fifo.md");
        root.makeFifo("becomes a fifo.md");
        return 0;
    });
    EXPECT_THAT(ids(), IsEmpty());
}

TEST_F(LibraryLoadTest, The_size_limit_holds_for_the_listed_size_and_for_what_is_read)
{
    QByteArray const fits(sheetSizeLimit, 'x');
    EXPECT_EQ(only(fits).source.size(), sheetSizeLimit);
    auto const tooLarge = description(LibraryError::tooLarge);
    EXPECT_EQ(tooLarge, u"This sheet exceeds the 2 MiB limit. Open it in your editor to shorten it."_s);
    beforeReading([] { return ADD_FAILURE() << "it is not even opened", 0; });
    EXPECT_EQ(only(fits + 'x').error, tooLarge);
    beforeReading([&] { return root.write("x.md", fits + 'x'), 0; });
    EXPECT_EQ(only("small").error, tooLarge);
}

TEST_F(LibraryLoadTest, A_file_that_cannot_be_used_is_a_sheet_that_says_why)
{
    auto const encoding = u"This sheet is not valid UTF-8. Save it as UTF-8 in your editor."_s;
    QByteArray const name = "keys.quillory.md"; // the name alone says what it is
    auto const nothing = [] { return 0; };
    using Case = std::tuple<QByteArray, QString, std::function<int()>>;
    for (auto const& [contents, error, fault] : { Case { "{}", systemText(EACCES), [] { return EACCES; } },
             Case { "{}", systemText(ENOENT), [&] { return root.remove(name), 0; } },
             Case { "{}", systemText(ELOOP), [&] { return root.remove(name), root.link(name, "x"), 0; } },
             Case { "a\xFFz", encoding, nothing }, Case { "tail \xE2\x82", encoding, nothing } }) {
        root.remove(name);
        beforeReading(fault);
        EXPECT_EQ(
            only(contents, name), (Sheet { .id = u"keys.quillory.md"_s, .title = u"keys.quillory"_s, .error = error }))
            << qPrintable(error);
    }
    EXPECT_FALSE(only("{}", name).error);
    beforeReading([] { return EACCES; }, Step::status);
    EXPECT_EQ(only("{}", name).error, systemText(EACCES));
}

TEST_F(LibraryLoadTest, A_name_that_is_no_text_asks_for_a_new_one)
{
    auto const sheet = only("# Fine", "caf\xE9.md");
    EXPECT_EQ(sheet.id, u"caf%E9.md"_s);
    EXPECT_EQ(sheet.error, u"The name of this file is not valid UTF-8. Give it a new name."_s);
    auto const namesake = Sheet { .id = sheet.id, .source = u"# Fine"_s, .parsed = ParsedMarkdown() };
    EXPECT_EQ(load({ namesake }), QList<Sheet> { sheet }); // that was really called so
}

TEST_F(LibraryLoadTest, The_title_is_the_first_block_if_that_is_a_heading_of_level_one)
{
    for (auto const& [text, title] :
        std::initializer_list<std::pair<QByteArray, QString>> { { "# One `two`\n# Three", u"One `two`"_s },
            { "text\n\n# One", u"x"_s }, { "## One", u"x"_s }, { "", u"x"_s }, { "\uFEFF# One", u"One"_s } }) {
        auto const sheet = only(text);
        EXPECT_EQ(sheet.title, title) << text.toStdString();
        EXPECT_EQ(sheet.source.toUtf8(), text);
        EXPECT_TRUE(sheet.parsed && !sheet.shortcuts && !sheet.error);
    }
}

TEST_F(LibraryLoadTest, A_structured_sheet_has_its_title_as_written_and_an_invalid_one_its_stem)
{
    auto const sheet = only(structured, "Keys.Quillory.JSON");
    EXPECT_EQ(sheet.title, u" Keys "_s);
    EXPECT_TRUE(sheet.shortcuts && !sheet.parsed && !sheet.error);
    EXPECT_EQ(sheet.source.toUtf8(), structured);

    auto const invalid = only("{\"schemaVersion\":2}", "Keys.Quillory.JSON");
    EXPECT_EQ(invalid.title, u"Keys.Quillory"_s);
    EXPECT_TRUE(invalid.error->startsWith(u"Invalid Quillory JSON — "_s)) << qPrintable(*invalid.error);
    EXPECT_TRUE(invalid.source.isEmpty());
}

TEST_F(LibraryLoadTest, A_folder_that_cannot_be_listed_fails_the_load)
{
    EXPECT_EQ(loadLibrary(files, pictures, root.path("gone")).error(), SystemError(ENOENT));
    beforeReading([] { return EIO; }, Step::names);
    EXPECT_EQ(loadLibrary(files, pictures, root.path()).error(), SystemError(EIO));
}

TEST_F(LibraryLoadTest, What_has_not_changed_is_read_once_and_not_made_again)
{
    for (int number = 10; number < 95; ++number) // more than one thread reads
        root.write(QByteArray::number(number) + (number % 2 ? ".md" : ".quillory.json"), structured);
    root.write("empty.md", "");
    auto previous = load();
    for (auto& sheet : previous)
        sheet.title = u"taken over"_s; // a mark that only the previous sheets bear
    previous[0].error = u"gone by now"_s;
    previous[85] = { .id = u"empty.md"_s, .title = u"empty"_s, .error = u"never read"_s }; // its text is empty as well
    root.write("19.md", "# New");
    root.remove("29.md");
    root.makeFifo("29.md");
    root.write("aa.md", "# Added");
    std::atomic<int> reads = 0;
    files.before = [&](Step step, QByteArray const& name) {
        reads += step == Step::read ? 1 : 0;
        return step == Step::read && name == "39.md" ? EIO : 0;
    };

    auto const again = load(previous);
    EXPECT_EQ(reads, 85 + 4); // what has changed, failed or come once more
    QStringList made;
    for (auto const& sheet : again) {
        if (sheet.title != u"taken over"_s || sheet.error)
            made << sheet.title;
    }
    EXPECT_THAT(made, ElementsAre(u"New"_s, u"39"_s, u"Added"_s, u"empty"_s));
    EXPECT_EQ(again.size(), 86);
    EXPECT_TRUE(again.last().parsed);
}

TEST(SheetTest, Ids_titles_and_references_are_compared_canonically_and_texts_exactly)
{
    Sheet const composed { .id = u"\u00E9"_s, .title = u"\u00E9"_s, .images = { { u"\u00E9"_s, { {}, 1 } } } };
    Sheet decomposed { .id = u"e\u0301"_s,
        .title = u"e\u0301"_s,
        .images = { { u"e\u0301"_s, { QImage(1, 1, QImage::Format_Mono), 1 } } } };
    EXPECT_EQ(composed, decomposed);
    decomposed.images[u"e\u0301"_s].fingerprint = 2;
    EXPECT_NE(composed, decomposed);

    EXPECT_NE((Sheet { .source = u"\u00E9"_s }), (Sheet { .source = u"e\u0301"_s }));
    QList<Sheet> const twins { { .id = u"e\u0301"_s }, { .id = u"\u00E9"_s } };
    EXPECT_EQ(findSheet(twins, u"\u00E9"_s), &twins[1]);
    EXPECT_EQ(findSheet({ twins[0] }, u"\u00E9"_s)->id, u"e\u0301"_s);
    EXPECT_EQ(findSheet(twins, u"e"_s), nullptr);
}

}
}
