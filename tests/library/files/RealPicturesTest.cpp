#include "library/LibraryLoad.h"
#include "platform/linux/files/PosixFileSystem.h"
#include "platform/linux/qt/QtPictureDecoder.h"
#include "support/SamplePictures.h"

#include <gmock/gmock.h>

#include <QFile>
#include <QTemporaryDir>

#include <fstream>

#include <sys/stat.h>
#include <unistd.h>

namespace Quillory {
namespace {

using namespace Qt::StringLiterals;
using testing::ElementsAre;

class RealPicturesTest : public testing::Test {
protected:
    RealPicturesTest()
    {
        for (auto const* name : { "outside", "library", "library/images" })
            mkdir(at(name).constData(), 0755);
    }

    QByteArray at(QByteArray const& name) const { return QFile::encodeName(folder.path()) + '/' + name; }

    void write(QByteArray const& name, QByteArray const& contents) const
    {
        std::ofstream(at(name).constData(), std::ios::binary) << contents.toStdString();
    }

    void link(QByteArray const& name, QByteArray const& target) const
    {
        ASSERT_EQ(symlink(target.constData(), at(name).constData()), 0);
    }

    Sheet only() const
    {
        return loadLibrary(PosixFileSystem(), QtPictureDecoder(), folder.filePath(u"library"_s)).value().value(0);
    }

    QTemporaryDir folder;
};

TEST_F(RealPicturesTest, A_sheet_shows_what_lies_in_the_library_and_is_a_picture_by_its_bytes)
{
    write("library/images/a b.png", encodedPicture("png", { 1000, 500 }));
    write("library/no.txt", encodedPicture("webp", { 7, 7 }));
    write("library/picture.svg", "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"9\" height=\"9\"/>");
    write("outside/secret.png", encodedPicture("png", { 9, 9 }));
    write("library/images/\xFF.png", encodedPicture("png", { 9, 9 }));
    link("library/inner.png", "images/a b.png");
    link("library/outer.png", "../outside/secret.png");
    link("library/loop.png", "loop.png");
    ASSERT_EQ(mkfifo(at("library/fifo.png").constData(), 0644), 0);
    write("library/x.md",
        "![](images/a%20b.png) ![](no.txt) ![](picture.svg) ![](inner.png) ![](outer.png) ![](loop.png) ![](fifo.png) "
        "![](../outside/secret.png) ![](images/%FF.png) ![](images) ![](/dev/zero) ![](x.md)");
    auto const sheet = only();
    EXPECT_THAT(sheet.images.keys(), ElementsAre(u"images/a%20b.png"_s, u"inner.png"_s, u"no.txt"_s));
    EXPECT_EQ(sheet.images[u"inner.png"_s].cgImage.size(), QSize(720, 360));
    unlink(at("library/images/\xFF.png").constData()); // which the temporary folder's own end couldn't
}

TEST_F(RealPicturesTest, Icons_that_are_no_static_png_of_the_one_size_are_warned_of)
{
    auto const good = encodedPicture("png", { 256, 256 }, true);
    write("library/GOOD.PNG", good);
    write("library/low.png", encodedPicture("png", { 256, 255 }));
    write("library/renamed.png", encodedPicture("jpeg", { 256, 256 }));
    write("library/animated.png", withChunks(good, animationChunk(2)));
    write("library/still.png", withChunks(good, animationChunk(1)));
    write("library/torn.png", good.first(good.size() / 2));
    write("library/icon.gif", good);
    write("library/png", good);
    write("library/empty.png", "");
    auto const padding = [&](qsizetype size) {
        return withChunks(good, pngChunk("tEXt", QByteArray(size - good.size() - 12, 'x')));
    };
    write("library/largest.png", padding(262'144));
    write("library/too large.png", padding(262'145));
    QByteArray sections;
    for (auto const* name : { "GOOD.PNG", "low.png", "renamed.png", "animated.png", "still.png", "torn.png",
             "largest.png", "too large.png", "icon.gif", "png", "empty.png" })
        sections += QByteArray(sections.isEmpty() ? "" : ",") + R"({"id":")" + name + R"(","title":"S","icon":")" + name
            + R"(","entries":[]})";
    write("library/k.quillory.json", R"({"schemaVersion":1,"title":"K","sections":[)" + sections + "]}");
    auto const sheet = only();
    EXPECT_EQ(sheet.error, std::nullopt);
    EXPECT_THAT(sheet.images.keys(), ElementsAre(u"GOOD.PNG"_s, u"largest.png"_s, u"still.png"_s));
    QStringList warned;
    for (auto const& warning : sheet.iconWarnings)
        warned.append(warning.section(u": use a readable"_s, 0, 0));
    EXPECT_THAT(warned,
        ElementsAre(u"Icon animated.png"_s, u"Icon empty.png"_s, u"Icon icon.gif"_s, u"Icon low.png"_s, u"Icon png"_s,
            u"Icon renamed.png"_s, u"Icon too large.png"_s, u"Icon torn.png"_s));
}

}
}
