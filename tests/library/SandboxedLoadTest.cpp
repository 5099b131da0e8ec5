#include "library/ForeignBytes.h"
#include "library/LibraryError.h"
#include "library/LibraryLoad.h"
#include "support/FakeLibraryServices.h"
#include "support/SamplePictures.h"
#include "support/Test.h"

#include <map>

namespace Quillory {
namespace {

// Interprets, but for bytes that begin with the name of a failure, or with "later", which wait until they are finished.
class FaultySandbox final : public Sandbox {
public:
    std::shared_ptr<SandboxJob> start(SandboxRequest request) override
    {
        started.append(request.bytes);
        static std::map<QByteArray, SandboxFailure> const failures { { "slow", SandboxFailure::tookTooLong },
            { "crash", SandboxFailure::crashed }, { "none", SandboxFailure::unavailable } };
        for (auto const& [name, failure] : failures) {
            if (!request.bytes.startsWith(name))
                continue;
            auto job = std::make_shared<SandboxJob>(std::move(request));
            job->finish(std::unexpected(failure));
            return job;
        }
        if (!request.bytes.startsWith("later"))
            return real.start(std::move(request));
        auto job = std::make_shared<SandboxJob>(std::move(request));
        waiting = job;
        return job;
    }

    void finishWaiting() const { waiting.lock()->finish(*real.start(waiting.lock()->request())->answer()); }

    QtPictureDecoder decoder;
    mutable InProcessSandbox real { ForeignBytes::interpreter(decoder) };
    QByteArrayList started;
    std::weak_ptr<SandboxJob> waiting;
};

class SandboxedLoadTest : public Test {
protected:
    // A line for each sheet: how it stands, its title, and whether it is shown as code.
    QStringList load(std::uint64_t trees = LibraryLoad::treeLimit, std::uint64_t pictures = SheetPictures::memoryLimit)
    {
        sandbox.started.clear();
        auto loaded = LibraryLoad { .files = files,
            .sandbox = sandbox,
            .folder = root.path("library"),
            .previous = sheets,
            .earlier = memory,
            .patience = 0ms,
            .trees = trees,
            .pictures = pictures }
                          .run()
                          .value();
        sheets = loaded.sheets;
        memory = std::make_shared<LoadMemory>(std::move(loaded.memory));
        QStringList lines;
        for (auto const& sheet : sheets)
            lines.append(lineOf(sheet));
        return lines;
    }

    static QString lineOf(Sheet const& sheet)
    {
        static QHash<QString, QString> const words { { *description(Interpretation::underWay), u"later"_s },
            { *description(Interpretation::tookTooLong), u"slow"_s },
            { *description(Interpretation::crashed), u"crash"_s }, { description(LibraryError::noSandbox), u"none"_s },
            { description(LibraryError::overBudget), u"full"_s } };
        auto const isCode = sheet.parsed == ParsedMarkdown::asCode(sheet.source);
        return (sheet.error ? words.value(*sheet.error) : u"good"_s) + u' ' + sheet.title
            + (isCode ? u" as code"_s : QString()) + (sheet.images.isEmpty() ? QString() : u" with picture"_s);
    }

    void write(QByteArray const& name, QByteArray const& text) const { root.write("library/" + name, text); }

    TemporaryFolder root;
    FaultyFileSystem files;
    FaultySandbox sandbox;
    QList<Sheet> sheets;
    std::shared_ptr<LoadMemory const> memory = std::make_shared<LoadMemory>();
};

TEST_F(SandboxedLoadTest, A_text_that_fails_stands_as_code_until_it_changes_and_others_as_ever)
{
    write("a.md", "slow");
    write("b.md", "crash");
    write("c.md", "none");
    write("d.md", "# D\n![](slow.png)");
    write("slow.png", "slow");
    EXPECT_THAT(load(), ElementsAre(u"slow a as code"_s, u"crash b as code"_s, u"none c"_s, u"good D"_s));
    EXPECT_EQ(sandbox.started.size(), 5);
    EXPECT_THAT(load(), ElementsAre(u"slow a as code"_s, u"crash b as code"_s, u"none c"_s, u"good D"_s));
    EXPECT_THAT(sandbox.started, ElementsAre("none")); // which says nothing about the sheet
    write("a.md", "# A");
    write("slow.png", encodedPicture("png", { 2, 2 }));
    EXPECT_THAT(load(), ElementsAre(u"good A"_s, u"crash b as code"_s, u"none c"_s, u"good D with picture"_s));
}

TEST_F(SandboxedLoadTest, What_is_not_there_in_time_comes_with_a_later_load_and_is_begun_once)
{
    write("a.md", "later");
    write("b.md", "# B");
    EXPECT_THAT(load(), ElementsAre(u"later a as code"_s, u"good B"_s));
    EXPECT_TRUE(memory->isUnderWay());
    EXPECT_THAT(load(), ElementsAre(u"later a as code"_s, u"good B"_s));
    EXPECT_THAT(sandbox.started, IsEmpty());
    sandbox.finishWaiting();
    EXPECT_THAT(load(), ElementsAre(u"good a"_s, u"good B"_s));
    EXPECT_FALSE(memory->isUnderWay());

    write("a.md", "later, changed");
    load();
    write("a.md", "# A");
    EXPECT_THAT(load(), ElementsAre(u"good A"_s, u"good B"_s));
    EXPECT_TRUE(sandbox.waiting.expired()) << "nobody waits for the earlier text";
}

TEST_F(SandboxedLoadTest, Memory_goes_to_the_first_in_order)
{
    for (auto const* name : { "a.md", "b.md", "c.md", "d.md" })
        write(name, "# Title\n![](" + QByteArray(name) + ".png)" + QByteArray(1000, 'x'));
    for (int number = 0; number < 4; ++number)
        write(QByteArray(1, static_cast<char>('a' + number)) + ".md.png", encodedPicture("png", { 10, 10 + number }));
    load();
    auto const tree = sheets.first().parsed->byteSize();
    for (int round = 0; round < 3; ++round) {
        EXPECT_THAT(load(tree * 5 / 2, 900),
            ElementsAre(u"good Title with picture"_s, u"good Title with picture"_s, u"full c"_s, u"full d"_s));
        if (round == 1)
            sheets.clear(); // from the beginning again
    }
    EXPECT_THAT(load(tree * 100, 900),
        ElementsAre(u"good Title with picture"_s, u"good Title with picture"_s, u"good Title"_s, u"good Title"_s));
}

TEST_F(SandboxedLoadTest, A_saved_text_replaces_the_last_readable_version_only_once_it_is_known_what_it_is)
{
    FakeLibraryServices fakes;
    auto services = fakes.services();
    LibraryStore store(LibraryStore::Services { services.defaults, services.bookmarks, files, sandbox, services.events,
                           services.executor, services.clipboard, services.announcements, services.fileOpener,
                           services.openPanels, services.workspace },
        LibraryStore::RestoreFolder::no);
    auto const line = [&](Interpretation interpretation, QByteArray const& text) {
        Sheet const sheet { .id = u"a.md"_s,
            .title = QString::fromUtf8(text),
            .source = QString::fromUtf8(text),
            .error = description(interpretation),
            .parsed = ParsedMarkdown::parsingUtf8(text),
            .interpretation = interpretation };
        store.applyLoadedSheets({ sheet }, 0);
        auto const& shown = store.sheets.value().first();
        return shown.title + (shown.error ? u", error"_s : u""_s) + (showsLastReadable(shown) ? u", last"_s : u""_s);
    };
    using enum Interpretation;
    EXPECT_EQ(line(underWay, "one"), u"one, error"_s);
    EXPECT_EQ(line(underWay, "two"), u"two, error"_s);
    EXPECT_EQ(line(complete, "three"), u"three"_s);
    EXPECT_EQ(line(underWay, "four"), u"three, error, last"_s);
    EXPECT_EQ(line(tookTooLong, "four"), u"four, error"_s);
}

}
}
