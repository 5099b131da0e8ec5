#include "library/LibraryReference.h"

#include "support/FaultyFileSystem.h"
#include "support/TemporaryFolder.h"
#include "support/Test.h"

#include <cerrno>

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
    auto const absolute = u"%2F"_s + root.path("library/x.png").sliced(1);
    using Case = std::pair<QString, std::optional<QByteArray>>;
    for (auto const& [reference, path] :
        { Case { u"x.png"_s, "x.png" }, Case { u"./x.png"_s, "x.png" }, Case { u"images/a b.png"_s, "images/a b.png" },
            Case { u"images/a%20b.png"_s, "images/a b.png" }, Case { u"images%2Fdeep/y.png"_s, "images/deep/y.png" },
            Case { u"images/../x.png"_s, "x.png" }, Case { u"gone/../x.png"_s, "x.png" },
            Case { u"../library/x.png"_s, "x.png" }, Case { u"inside/deep/y.png"_s, "images/deep/y.png" },
            Case { u"C#.png"_s, "C#.png" }, Case { u"~x?.png"_s, "~x?.png" }, Case { u"100%.png"_s, "100%.png" },
            Case { u"caf%E9.png"_s, "caf%E9.png" } }) // no UTF-8, so it stays as written
        EXPECT_EQ(resolveLibraryReference(reference, *folder), path) << qPrintable(reference);
    for (auto const& reference : { u""_s, u"."_s, u"itself"_s, u"images/.."_s, u".."_s, u"../secret.png"_s,
             u"../library-2/x.png"_s, u"images/../../secret.png"_s, u"%2e%2e/secret.png"_s, u"..%2Fsecret.png"_s,
             u"%252e%252e/library/x.png"_s /* decoded once */, u"/etc/passwd"_s, u"//host/x.png"_s, u"%2Fetc/passwd"_s,
             absolute, root.path("library/x.png"), u"file:///x.png"_s, u"file:x.png"_s, u"HTTPS://example.org/x.png"_s,
             u"data:image/png;base64,AAAA"_s, u"x.png%00.txt"_s, u"outside/x.png"_s, u"beside/x.png"_s, u"gone.png"_s })
        EXPECT_EQ(resolveLibraryReference(reference, *folder), std::nullopt) << qPrintable(reference);
}

TEST_F(LibraryReferenceTest, A_file_is_read_only_within_the_limit_and_when_it_lies_inside_once_open)
{
    root.write("outside/deep/y.png", "12");
    auto const put = [this](QByteArray const& contents) {
        return [=, this] { root.write("library/a/deep/y.png", contents); };
    };
    auto const move = [this](QByteArray const& from, QByteArray const& to) {
        return [=, this] { root.rename("library/a" + from, to); };
    };
    auto const link = [this](QByteArray const& name, QByteArray const& target) {
        return [=, this] { root.remove("library/a" + name), root.link("library/a" + name, target); };
    };
    struct Case {
        char const* what;
        QByteArray contents;
        bool isRead;
        Step step = Step::open;
        std::function<void()> meanwhile = [] { }; // before the step
        int error = 0;
    };
    for (auto const& [what, contents, isRead, step, meanwhile, error] : {
             Case { "at the limit", "12345", true },
             Case { "beyond it", "123456", false },
             Case { "empty", "", false },
             Case { "grown beyond it", "1", false, Step::fileRead, put("123456") },
             Case { "grown to it", "1", true, Step::fileRead, put("12345") },
             Case { "unreadable", "1", false, Step::fileRead, [] {}, EIO },
             Case { "a fifo by now", "1", false, Step::open,
                 [&] { root.remove("library/a/deep/y.png"), root.makeFifo("library/a/deep/y.png"); } },
             Case { "a link by now", "1", false, Step::open, link("/deep/y.png", "../../x.png") },
             Case {
                 "a link to the outside", "1", false, Step::open, link("/deep/y.png", root.at("outside/deep/y.png")) },
             Case { "its folder a link", "1", false, Step::open, link("", root.at("outside")) },
             Case { "moved out", "1", false, Step::fileRealPath, move("/deep/y.png", "outside/p.png") },
             Case { "moved beside", "1", false, Step::fileRealPath, move("/deep/y.png", "library-2/p.png") },
             Case { "moved within", "1", true, Step::fileRealPath, move("/deep/y.png", "library/moved.png") },
             Case { "moved out with its folder", "1", false, Step::fileStatus, move("", "away") },
             Case { "moved within with its folder", "1", true, Step::fileStatus, move("", "library/away") },
         }) {
        for (auto const* name : { "library/a", "library/away", "away" })
            root.remove(name);
        root.write("library/a/deep/y.png", contents);
        auto const path = resolveLibraryReference(u"a/deep/y.png"_s, *folder).value();
        files.before = [&](Step at, auto const&) { return at == step ? (meanwhile(), error) : 0; };
        EXPECT_EQ(readLibraryFile(path, *folder, 5).has_value(), isRead) << what;
        files.before = nullptr;
    }
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
