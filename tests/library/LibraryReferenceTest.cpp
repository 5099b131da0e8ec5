#include "library/LibraryReference.h"

#include "support/FakeFileSystem.h"

#include <gmock/gmock.h>

#include <cerrno>

namespace Quillory {
namespace {

using namespace Qt::StringLiterals;
using Kind = FakeFileSystem::Kind;

QString const library = u"/home/me/library"_s;

class LibraryReferenceTest : public testing::Test {
protected:
    LibraryReferenceTest()
    {
        for (auto const* name :
            { "x.png", "C#.png", "~x?.png", "100%.png", "caf%E9.png", "images/a b.png", "images/deep/y.png" })
            files.write(library, name, "picture");
        files.put(library, "inside", { .kind = Kind::symbolicLink, .contents = "images" });
        files.put(library, "outside", { .kind = Kind::symbolicLink, .contents = "/etc" });
        files.put(library, "beside", { .kind = Kind::symbolicLink, .contents = "../library-2" });
        files.put(library, "itself", { .kind = Kind::symbolicLink, .contents = "." });
        folder = files.openFolder(library).value();
    }

    FakeFileSystem files;
    std::unique_ptr<OpenFolder> folder;
};

TEST_F(LibraryReferenceTest, A_reference_means_a_path_inside_the_library_or_nothing)
{
    struct Case {
        QString reference;
        std::optional<QByteArray> path;
    };
    for (auto const& [reference, path] : {
             Case { u"x.png"_s, "x.png" },
             Case { u"./x.png"_s, "x.png" },
             Case { u"images/a b.png"_s, "images/a b.png" },
             Case { u"images/a%20b.png"_s, "images/a b.png" },
             Case { u"images%2Fdeep/y.png"_s, "images/deep/y.png" },
             Case { u"images/../x.png"_s, "x.png" },
             Case { u"gone/../x.png"_s, "x.png" },
             Case { u"../library/x.png"_s, "x.png" },
             Case { u"inside/deep/y.png"_s, "images/deep/y.png" },
             Case { u"C#.png"_s, "C#.png" },
             Case { u"~x?.png"_s, "~x?.png" },
             Case { u"100%.png"_s, "100%.png" },
             Case { u"caf%E9.png"_s, "caf%E9.png" }, // no UTF-8, so it stays as written
             Case { u""_s, std::nullopt },
             Case { u"."_s, std::nullopt },
             Case { u"itself"_s, std::nullopt },
             Case { u"images/.."_s, std::nullopt },
             Case { u".."_s, std::nullopt },
             Case { u"../secret.png"_s, std::nullopt },
             Case { u"../library-2/x.png"_s, std::nullopt },
             Case { u"images/../../secret.png"_s, std::nullopt },
             Case { u"%2e%2e/secret.png"_s, std::nullopt },
             Case { u"..%2Fsecret.png"_s, std::nullopt },
             Case { u"%252e%252e/library/x.png"_s, std::nullopt }, // decoded once
             Case { u"/etc/x.png"_s, std::nullopt },
             Case { u"//host/x.png"_s, std::nullopt },
             Case { u"%2Fetc/x.png"_s, std::nullopt },
             Case { u"%2Fhome/me/library/x.png"_s, std::nullopt },
             Case { u"file:///x.png"_s, std::nullopt },
             Case { u"file:x.png"_s, std::nullopt },
             Case { u"HTTPS://example.org/x.png"_s, std::nullopt },
             Case { u"data:image/png;base64,AAAA"_s, std::nullopt },
             Case { u"x.png%00.txt"_s, std::nullopt },
             Case { u"outside/x.png"_s, std::nullopt },
             Case { u"beside/x.png"_s, std::nullopt },
             Case { u"gone.png"_s, std::nullopt },
         })
        EXPECT_EQ(resolveLibraryReference(reference, *folder), path) << qPrintable(reference);
}

TEST_F(LibraryReferenceTest, A_file_is_read_only_within_the_limit_and_when_it_lies_inside_once_open)
{
    struct Case {
        FakeFileSystem::Entry entry;
        bool isRead;
    };
    for (auto const& [entry, isRead] : {
             Case { { .contents = "12345" }, true },
             Case { { .contents = "123456" }, false },
             Case { { .contents = "" }, false },
             Case { { .contents = "1", .contentsAfterStatus = "123456" }, false },
             Case { { .contents = "1", .contentsAfterStatus = "12345" }, true },
             Case { { .contents = "1", .readError = EIO }, false },
             Case { { .kind = Kind::fifo, .contents = "1" }, false },
             Case { { .kind = Kind::symbolicLink, .contents = "x.png" }, false },
             Case { { .contents = "1", .realPathOnceOpen = "/etc/p.png" }, false },
             Case { { .contents = "1", .realPathOnceOpen = "/home/me/library" }, false },
             Case { { .contents = "1", .realPathOnceOpen = "/home/me/library-2/p.png" }, false },
             Case { { .contents = "1", .realPathOnceOpen = "/home/me/library/moved.png" }, true },
         }) {
        files.put(library, "p.png", entry);
        auto const bytes = readLibraryFile("p.png", *folder, 5);
        EXPECT_EQ(bytes.has_value(), isRead) << entry.contents.toStdString();
    }
    auto const reads = files.reads(library);
    EXPECT_EQ(readLibraryFile("x.png", *folder, 6), std::nullopt);
    EXPECT_EQ(files.reads(library), reads); // a file that is too large costs no memory
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
