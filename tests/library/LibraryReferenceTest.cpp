#include "library/LibraryReference.h"

#include "support/Cases.h"
#include "support/FaultyFileSystem.h"
#include "support/TemporaryFolder.h"

#include <cerrno>
#include <map>

namespace Quillory {
namespace {

using Step = FaultyFileSystem::Step;

class LibraryReferenceTest : public Test {
protected:
    LibraryReferenceTest()
    {
        for (auto const* name : { "library/x.png", "library/C#.png", "library/~x?.png", "library/100%.png",
                 "library/caf%E9.png", "library/images/a b.png", "library/images/deep/y.png", "library-2/x.png",
                 "outside/x.png", "secret.png" })
            root.write(name, "picture");
        root.link("library/inside", "images");
        root.link("library/outside", root.at("outside"));
        root.link("library/beside", "../library-2");
        root.link("library/itself", ".");
        folder = files.openFolder(root.path("library")).value();
    }

    TemporaryFolder root;
    FaultyFileSystem files;
    std::unique_ptr<OpenFolder> folder;
};

TEST_F(LibraryReferenceTest, A_reference_means_a_path_inside_the_library_or_nothing)
{
    forEachCase(u"references"_s, [this](auto const& row) {
        auto const path = resolveLibraryReference(row[0].toString(), *folder);
        EXPECT_EQ(path.transform([](auto const& bytes) { return QString::fromUtf8(bytes); }), textIn(row[1]));
    });
    for (auto const& absolute : { root.path("library/x.png"), u"%2F"_s + root.path("library/x.png").sliced(1) })
        EXPECT_EQ(resolveLibraryReference(absolute, *folder), std::nullopt);
}

TEST_F(LibraryReferenceTest, A_file_is_read_only_within_the_limit_and_when_it_lies_inside_once_open)
{
    root.write("outside/deep/y.png", "12");
    forEachCase(u"meanwhile"_s, [this](auto const& row) {
        for (auto const* name : { "library/a", "library/away", "away" })
            root.remove(name);
        root.write("library/a/deep/y.png", row[0].toString().toUtf8());
        auto const path = resolveLibraryReference(u"a/deep/y.png"_s, *folder).value();
        std::map<QString, Step> const steps { { u"open"_s, Step::open }, { u"status"_s, Step::fileStatus },
            { u"real path"_s, Step::fileRealPath }, { u"read"_s, Step::fileRead } };
        files.before = [&](Step at, auto const&) {
            EXPECT_TRUE(at != steps.at(row[1].toString()) || root.run("cd library; " + row[2].toString().toUtf8()));
            return 0;
        };
        EXPECT_EQ(readLibraryFile(path, *folder, 5).has_value(), row[3].toBool());
        files.before = nullptr;
    });
    files.before = [](Step step, auto const&) { return step == Step::fileRead ? EIO : 0; };
    EXPECT_EQ(readLibraryFile("x.png", *folder, 7), std::nullopt);
    files.before = [](Step step, auto const&) {
        return step == Step::fileRead ? ADD_FAILURE() << "costs memory", 0 : 0;
    };
    EXPECT_EQ(readLibraryFile("x.png", *folder, 6), std::nullopt);
    EXPECT_EQ(readLibraryFile("gone.png", *folder, 5), std::nullopt);
    EXPECT_EQ(readLibraryFile("../library/x.png", *folder, 50), std::nullopt);
}

TEST_F(LibraryReferenceTest, Folders_that_references_name_are_told_with_those_on_the_way)
{
    auto const markdown = [](QString const& text) { return Sheet { .parsed = ParsedMarkdown::parsing(text) }; };
    ShortcutSheet keys;
    keys.icon = u"icons/a.png"_s;
    keys.sections = { { .icon = u"x/../icons/b.png"_s } };
    EXPECT_EQ(referencedFolders({ markdown(u"![](a/b/c.png) ![](top.png) ![](a%20b/c.png)"_s),
                  markdown(u"![](../a.png) ![](/c/a.png) ![](http://d/a.png)"_s), { .shortcuts = keys } }),
        (QStringList { u"a"_s, u"a b"_s, u"a/b"_s, u"icons"_s }));
    EXPECT_EQ(referencedFolders({ markdown(u"![]("_s + u"a/"_s.repeated(500'000) + u"b.png)"_s) }), QStringList());
    QString many;
    for (int number = 0; number < 5000; ++number)
        many += u"![](f%1/a.png)\n"_s.arg(number);
    EXPECT_EQ(referencedFolders({ markdown(many) }).size(), 256);
}

}
}
