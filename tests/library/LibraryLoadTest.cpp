#include "library/LibraryLoad.h"

#include "library/LibraryError.h"
#include "support/FakeFileSystem.h"
#include "support/FakePictureDecoder.h"

#include <gmock/gmock.h>

#include <cerrno>

namespace Quillory {
namespace {

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using Kind = FakeFileSystem::Kind;

constexpr auto largest = sheetSizeLimit;

QString const folder = u"/library"_s;
QByteArray const structured
    = R"({"schemaVersion":1,"title":" Keys ","sections":[{"id":"a","title":"A","entries":[]}]})";

class LibraryLoadTest : public testing::Test {
protected:
    LibraryLoadTest() { files.addFolder(folder); }

    QList<Sheet> load(QList<Sheet> const& previous = {}) const
    {
        return loadLibrary(files, pictures, folder, previous).value();
    }

    QStringList ids() const
    {
        QStringList all;
        for (auto const& sheet : load())
            all.append(sheet.id);
        return all;
    }

    // The one sheet of a folder that holds this entry alone.
    Sheet only(FakeFileSystem::Entry const& entry, QByteArray const& name = "x.md")
    {
        files.put(folder, name, entry);
        auto const sheets = load();
        EXPECT_EQ(sheets.size(), 1);
        return sheets.value(0);
    }

    FakeFileSystem files;
    FakePictureDecoder pictures;
};

QString systemText(int error)
{
    return SystemError(error).localizedDescription();
}

TEST_F(LibraryLoadTest, What_counts_as_a_sheet_is_told_by_the_name_in_any_case)
{
    for (auto const* name : { "a.md", "README.MD", "KEYS.QUILLORY.JSON", "notes.txt.md", "b.markdown", "c.txt",
             "d.json", "notes.md.txt", "md", "e.md~", ".hidden.md", ".quillory.json", "x.quillory.json.md" })
        files.write(folder, name, structured);
    EXPECT_THAT(ids(),
        ElementsAre(u"a.md"_s, u"KEYS.QUILLORY.JSON"_s, u"notes.txt.md"_s, u"README.MD"_s, u"x.quillory.json.md"_s));
}

TEST_F(LibraryLoadTest, Sheets_stand_in_the_order_of_scalars_of_the_lowered_names)
{
    QByteArray const composed = "\u00E9.md";
    QByteArray const decomposed = "e\u0301.md";
    for (auto const& name : { QByteArray("b.md"), QByteArray("2.md"), QByteArray("10.md"), QByteArray("a.md"),
             QByteArray("A.md"), QByteArray("\uFF5E.md"), QByteArray("\U0001F600.md"), composed, decomposed })
        files.write(folder, name, "");
    EXPECT_THAT(ids(),
        ElementsAre(u"10.md"_s, u"2.md"_s, u"A.md"_s, u"a.md"_s, u"b.md"_s, u"e\u0301.md"_s, u"\u00E9.md"_s,
            u"\uFF5E.md"_s, u"\U0001F600.md"_s));
}

TEST_F(LibraryLoadTest, Only_regular_files_are_sheets)
{
    for (auto const kind : { Kind::folder, Kind::symbolicLink, Kind::fifo, Kind::socket })
        files.put(folder, QByteArray::number(static_cast<int>(kind)) + ".md", { .kind = kind });
    files.put(folder, "became-a-fifo.md", { .kindAfterStatus = Kind::fifo });
    EXPECT_THAT(ids(), ElementsAre());
}

TEST_F(LibraryLoadTest, The_size_limit_holds_for_the_listed_size_and_for_what_is_read)
{
    QByteArray const fits(largest, 'x');
    EXPECT_EQ(only({ .contents = fits }).source.size(), largest);
    EXPECT_EQ(only({ .contents = fits, .hidesSize = true }).error, std::nullopt);

    auto const tooLarge = description(LibraryError::tooLarge);
    EXPECT_EQ(tooLarge, u"This sheet exceeds the 2 MiB limit. Open it in your editor to shorten it."_s);
    auto const before = files.reads(folder, "x.md");
    EXPECT_EQ(only({ .contents = fits + 'x' }).error, tooLarge);
    EXPECT_EQ(files.reads(folder, "x.md"), before); // it is not even opened
    EXPECT_EQ(only({ .contents = fits + 'x', .hidesSize = true }).error, tooLarge);
    EXPECT_EQ(only({ .contents = "small", .contentsAfterStatus = fits + 'x' }).error, tooLarge);
}

TEST_F(LibraryLoadTest, A_file_that_cannot_be_used_is_a_sheet_that_says_why)
{
    auto const encoding = u"This sheet is not valid UTF-8. Save it as UTF-8 in your editor."_s;
    struct Case {
        FakeFileSystem::Entry entry;
        QString error;
    };
    for (auto const& [entry, error] :
        { Case { { .statusError = EACCES }, systemText(EACCES) }, Case { { .readError = EACCES }, systemText(EACCES) },
            Case { { .vanishesAfterStatus = true }, systemText(ENOENT) },
            Case { { .kindAfterStatus = Kind::symbolicLink }, systemText(ELOOP) },
            Case { { .contents = "a\xFFz" }, encoding }, Case { { .contents = "tail \xE2\x82" }, encoding } }) {
        auto const sheet = only(entry, "keys.quillory.md");
        EXPECT_EQ(sheet, (Sheet { .id = u"keys.quillory.md"_s, .title = u"keys.quillory"_s, .error = error }))
            << qPrintable(error);
    }
    auto const invalid = only({ .contents = "{}" }, "keys.quillory.md");
    EXPECT_FALSE(invalid.error); // the name alone says what it is
}

TEST_F(LibraryLoadTest, A_name_that_is_no_text_asks_for_a_new_one)
{
    auto const sheet = only({ .contents = "# Fine" }, "caf\xE9.md");
    EXPECT_EQ(sheet.id, u"caf%E9.md"_s);
    EXPECT_EQ(sheet.error, u"The name of this file is not valid UTF-8. Give it a new name."_s);
    auto const namesake = Sheet { .id = sheet.id, .source = u"# Fine"_s, .parsed = ParsedMarkdown() };
    EXPECT_EQ(load({ namesake }), QList<Sheet> { sheet }); // that was really called so
}

TEST_F(LibraryLoadTest, The_title_is_the_first_block_if_that_is_a_heading_of_level_one)
{
    struct Case {
        QByteArray text;
        QString title;
    };
    for (auto const& [text, title] :
        { Case { "# One `two`\n# Three", u"One `two`"_s }, Case { "text\n\n# One", u"x"_s }, Case { "## One", u"x"_s },
            Case { "", u"x"_s }, Case { "\uFEFF# One", u"One"_s } }) {
        auto const sheet = only({ .contents = text });
        EXPECT_EQ(sheet.title, title) << text.toStdString();
        EXPECT_EQ(sheet.source.toUtf8(), text);
        EXPECT_TRUE(sheet.parsed && !sheet.shortcuts && !sheet.error);
    }
}

TEST_F(LibraryLoadTest, A_structured_sheet_has_its_title_as_written_and_an_invalid_one_its_stem)
{
    auto const sheet = only({ .contents = structured }, "Keys.Quillory.JSON");
    EXPECT_EQ(sheet.title, u" Keys "_s);
    EXPECT_TRUE(sheet.shortcuts && !sheet.parsed && !sheet.error);
    EXPECT_EQ(sheet.source.toUtf8(), structured);

    auto const invalid = only({ .contents = "{\"schemaVersion\":2}" }, "Keys.Quillory.JSON");
    EXPECT_EQ(invalid.title, u"Keys.Quillory"_s);
    EXPECT_TRUE(invalid.error->startsWith(u"Invalid Quillory JSON — "_s)) << qPrintable(*invalid.error);
    EXPECT_TRUE(invalid.source.isEmpty());
}

TEST_F(LibraryLoadTest, A_folder_that_cannot_be_listed_fails_the_load)
{
    files.failListing(folder, EIO);
    EXPECT_EQ(loadLibrary(files, pictures, folder).error(), SystemError(EIO));
    EXPECT_EQ(loadLibrary(files, pictures, u"/gone"_s).error(), SystemError(ENOENT));
}

TEST_F(LibraryLoadTest, What_has_not_changed_is_read_once_and_not_made_again)
{
    for (int number = 10; number < 95; ++number) // more than one thread reads
        files.write(folder, QByteArray::number(number) + (number % 2 ? ".md" : ".quillory.json"), structured);
    files.write(folder, "empty.md", "");
    auto previous = load();
    for (auto& sheet : previous)
        sheet.title = u"taken over"_s; // a mark that only the previous sheets bear
    previous[0].error = u"gone by now"_s;
    previous[85] = { .id = u"empty.md"_s, .title = u"empty"_s, .error = u"never read"_s }; // its text is empty as well
    files.write(folder, "19.md", "# New");
    files.put(folder, "29.md", { .kind = Kind::fifo });
    files.put(folder, "39.md", { .contents = structured, .readError = EIO });
    files.write(folder, "aa.md", "# Added");
    auto const before = files.reads(folder);

    auto const again = load(previous);
    EXPECT_EQ(files.reads(folder) - before, 85 + 4); // what has changed, failed or come once more
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
