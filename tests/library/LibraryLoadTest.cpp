#include "library/LibraryLoad.h"

#include "library/LibraryError.h"
#include "linux/qt/QtPictureDecoder.h"
#include "support/Cases.h"
#include "support/FaultyFileSystem.h"
#include "support/TemporaryFolder.h"

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

TEST_F(LibraryLoadTest, Name_and_bytes_say_what_a_file_is)
{
    forEachCase(u"files"_s, [this](auto const& row) {
        auto const name = bytesIn(row[0]);
        auto const contents = row[1] == u"keys"_s ? structured : bytesIn(row[1]);
        auto const kind = row[2].toString();
        root.write(name, contents);
        auto const sheets = load();
        root.remove(name);
        ASSERT_EQ(sheets.size(), kind == u"none" ? 0 : 1);
        auto const sheet = sheets.value(0);
        EXPECT_EQ(sheet.parsed.has_value(), kind == u"markdown");
        EXPECT_EQ(sheet.shortcuts.has_value(), kind == u"structured");
        EXPECT_EQ(sheet.title, row[3].toString());
        EXPECT_EQ(sheet.error.value_or(QString()), row[4].toString());
        EXPECT_EQ(sheet.id, kind == u"none" ? u""_s : row[0].toString());
        EXPECT_EQ(sheet.source.toUtf8(), kind == u"none" || kind == u"error" ? "" : contents);
    });
}

TEST_F(LibraryLoadTest, Sheets_stand_in_the_order_of_scalars_of_the_lowered_names)
{
    QStringList names;
    forEachCase(u"order"_s, [&](auto const& name) {
        names << name.toString();
        root.write(names.last().toUtf8(), "");
    });
    QStringList ids;
    for (auto const& sheet : load())
        ids << sheet.id;
    EXPECT_EQ(ids, names);
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
    EXPECT_THAT(load(), IsEmpty());
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

TEST_F(LibraryLoadTest, A_file_or_folder_that_cannot_be_read_says_why)
{
    using Case = std::tuple<int, Step, std::function<int()>>;
    for (auto const& [error, step, fault] :
        { Case { EACCES, Step::read, [] { return EACCES; } }, Case { EACCES, Step::status, [] { return EACCES; } },
            Case { ENOENT, Step::read, [&] { return root.remove("x.md"), 0; } },
            Case { ELOOP, Step::read, [&] { return root.remove("x.md"), root.link("x.md", "y"), 0; } } }) {
        root.remove("x.md");
        beforeReading(fault, step);
        EXPECT_EQ(only("# Title"),
            (Sheet { .id = u"x.md"_s, .title = u"x"_s, .error = SystemError(error).localizedDescription() }));
    }
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
    previous << Sheet { .id = u"caf%E9.md"_s, .source = u"# Fine"_s, .parsed = ParsedMarkdown() }; // really called so
    root.write("caf\xE9.md", "# Fine");
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
    EXPECT_THAT(made, ElementsAre(u"New"_s, u"39"_s, u"Added"_s, u"caf%E9"_s, u"empty"_s));
    EXPECT_EQ(again.size(), 87);
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
