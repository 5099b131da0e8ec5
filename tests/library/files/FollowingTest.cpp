#include "library/LibraryStore.h"
#include "linux/files/InotifyFileEvents.h"
#include "linux/qt/QtExecutor.h"
#include "support/Cases.h"
#include "support/EventLoop.h"
#include "support/FakeLibraryServices.h"

namespace Quillory {
namespace {

// The store over real files, events and time.
class FollowingTest : public Test {
protected:
    FollowingTest()
    {
        shell("mkdir library elsewhere && echo first > library/x.md");
        store.connect(library);
    }

    void shell(QByteArray const& script)
    {
        ASSERT_TRUE(fakes.root.run(script)) << script.toStdString() << '\n' << fakes.root.read("log").toStdString();
    }
    // Of the file x.md, as it is shown.
    QString shown() const
    {
        auto const* const sheet = findSheet(store.sheets, u"x.md"_s);
        return sheet ? sheet->source : u"(none)"_s;
    }
    bool follows(QString const& text)
    {
        return loop.runUntil([&] { return shown() == text && !store.busy.value(); });
    }

    EventLoop loop;
    FakeLibraryServices fakes;
    QString const library = fakes.root.path("library");
    QtExecutor executor;
    InotifyFileEvents events { executor };
    LibraryStore store { fakes.services(fakes.defaults, events, executor), LibraryStore::RestoreFolder::no };
};

TEST_F(FollowingTest, What_editors_and_other_programs_save_is_shown)
{
    ASSERT_TRUE(follows(u"first\n"_s));
    forEachCase(u"saves"_s, [this](auto const& row) {
        shell(row[0].toString().toUtf8());
        EXPECT_TRUE(follows(row[1].toString())) << "shown: " << qPrintable(shown());
    });
}

TEST_F(FollowingTest, A_picture_that_comes_into_a_folder_below_is_told)
{
    shell("echo '![p](pics/deep/a.png)' > library/x.md");
    ASSERT_TRUE(follows(u"![p](pics/deep/a.png)\n"_s));
    int loads = 0;
    auto const observed = store.busy.addNotifier([&] { loads += store.busy.value() ? 1 : 0; });
    for (auto const* script :
        { "mkdir -p library/pics/deep", "echo a > library/pics/deep/a.png", "mv library/pics/deep/a.png elsewhere",
            "rm -r library/pics", "mkdir -p library/pics/deep", "mv elsewhere/a.png library/pics/deep" }) {
        auto const before = loads;
        shell(script);
        ASSERT_TRUE(loop.runUntil([&] { return loads > before && !store.busy.value(); })) << script;
    }
}

}
}
