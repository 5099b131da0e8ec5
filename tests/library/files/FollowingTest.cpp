#include "library/LibraryStore.h"
#include "linux/files/InotifyFileEvents.h"
#include "linux/qt/QtExecutor.h"
#include "support/EventLoop.h"
#include "support/FakeLibraryServices.h"
#include "support/Test.h"

#include <cstdlib>

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

    void shell(char const* script)
    {
        auto const command = "set -e; cd '" + fakes.root.at() + "'; export HOME=\"$PWD\" GIT_CONFIG_NOSYSTEM=1; ("
            + script + ") >log 2>&1 </dev/null";
        ASSERT_EQ(std::system(command.constData()), 0) << script << '\n' << fakes.root.read("log").toStdString();
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

    LibraryStore::Services services()
    {
        auto all = fakes.services();
        return { all.defaults, all.bookmarks, all.files, all.pictures, events, executor, all.clipboard,
            all.announcements, all.fileOpener, all.openPanels, all.workspace };
    }

    EventLoop loop;
    FakeLibraryServices fakes;
    QString const library = fakes.root.path("library");
    QtExecutor executor;
    InotifyFileEvents events { executor };
    LibraryStore store { services(), LibraryStore::RestoreFolder::no };
};

TEST_F(FollowingTest, What_editors_and_other_programs_save_is_shown)
{
    ASSERT_TRUE(follows(u"first\n"_s));
    using Case = std::pair<char const*, QString>;
    for (auto const& [script, text] :
        {
            Case { "echo by redirect > library/x.md", u"by redirect\n"_s },
            Case { "echo and more >> library/x.md", u"by redirect\nand more\n"_s },
            Case { "cd library; vim -N -u NONE -es -c '%s/redirect/vim/' -c wq x.md", u"by vim\nand more\n"_s },
            Case { "cd library; vim -N -u NONE -es -c 'set backup backupcopy=no' -c '$d' -c wq x.md", u"by vim\n"_s },
            Case { "sed -i s/vim/sed/ library/x.md", u"by sed\n"_s },
            Case { "echo by rsync > elsewhere/x.md; rsync -c elsewhere/x.md library/", u"by rsync\n"_s },
            Case { "echo in place > elsewhere/x.md; rsync -c --inplace elsewhere/x.md library/", u"in place\n"_s },
            Case { "cd library; git init -q -b main; git add x.md; git -c user.name=n -c user.email=e commit -qm one;"
                   "git checkout -q -b other; echo by git > x.md; git -c user.name=n -c user.email=e commit -qam two;"
                   "git checkout -q main",
                u"in place\n"_s },
            Case { "cd library; git checkout -q other", u"by git\n"_s },
            Case { "cd library; git stash -q; git checkout -q main; git merge -q other; echo moved > ../elsewhere/x.md;"
                   "mv ../elsewhere/x.md x.md",
                u"moved\n"_s },
            Case { "rm library/x.md", u"(none)"_s },
            Case { "echo a > library/y.md; ln library/y.md library/x.md; echo linked > library/x.md", u"linked\n"_s },
            Case {
                "mv library gone; mkdir new; echo another folder > new/x.md; mv new library", u"another folder\n"_s },
            Case { "echo in it > library/x.md", u"in it\n"_s },
        }) {
        shell(script);
        EXPECT_TRUE(follows(text)) << script << "\nshown: " << qPrintable(shown());
    }
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
