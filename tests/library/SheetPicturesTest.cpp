#include "library/SheetPictures.h"

#include "library/LibraryLoad.h"
#include "linux/files/PosixFileSystem.h"
#include "linux/qt/QtPictureDecoder.h"
#include "support/SamplePictures.h"
#include "support/TemporaryFolder.h"
#include "support/Test.h"

namespace Quillory {
namespace {

QByteArray const goodIcon = encodedPicture("png", { 256, 256 }, true);

// A picture of that many bytes, or one that `mark` tells apart from others.
QByteArray padded(QByteArray const& png, qsizetype size)
{
    return withChunks(png, pngChunk("tEXt", QByteArray(size - png.size() - 12, 'x')));
}
QByteArray photo(int mark)
{
    return padded(encodedPicture("png", { 1000, 750 }), 100'000 + mark);
}

QString warning(QString const& shown)
{
    return u"Icon "_s + shown
        + u": use a readable, static 256 × 256 PNG inside the library, no larger than 256 KB. Showing a placeholder."_s;
}

struct CountingDecoder final : PictureDecoder {
    std::optional<Properties> properties(QByteArray const& bytes) const override { return real.properties(bytes); }
    std::optional<QImage> image(QByteArray const& bytes) const override { return counted(real.image(bytes)); }
    std::optional<QImage> thumbnail(QByteArray const& bytes, int side) const override
    {
        return counted(real.thumbnail(bytes, side));
    }
    std::optional<QImage> counted(std::optional<QImage> image) const
    {
        decodes += image ? 1 : 0;
        return image;
    }

    QtPictureDecoder real;
    mutable int decodes = 0;
};

class SheetPicturesTest : public Test {
protected:
    void write(QByteArray const& name, QByteArray const& contents) const { root.write("library/" + name, contents); }

    PreparedIcons icons(QStringList references)
    {
        ShortcutSheet sheet;
        sheet.icon = references.takeFirst();
        for (auto const& reference : references)
            sheet.sections.append({ .icon = reference });
        auto const folder = files.openFolder(root.path("library")).value();
        return SheetPictures(*folder, decoder).prepareIcons(sheet);
    }

    QList<Sheet> load(QList<Sheet> const& previous = {}) const
    {
        return loadLibrary(files, decoder, root.path("library"), previous).value();
    }

    TemporaryFolder root;
    PosixFileSystem files;
    CountingDecoder decoder;
};

TEST_F(SheetPicturesTest, Warnings_come_once_a_reference_in_order_and_show_a_hundred_characters)
{
    write("a.png", goodIcon);
    write("aa.png", goodIcon);
    auto const family = u"\U0001F468\u200D\U0001F469\u200D\U0001F467"_s; // one character of five scalars
    auto const longest = u"a/"_s.repeated(512);
    auto const fits = u"./"_s.repeated(509) + u"aa.png"_s; // 1024 bytes, which are looked at
    auto const tooLong = u"./"_s.repeated(510) + u"a.png"_s;
    auto const [images, warnings] = icons({ u"z.png"_s, u"a.png"_s, u"../secret.png"_s, u"z.png"_s, u"file:///x.png"_s,
        u"/etc/x.png"_s, family.repeated(101), longest, longest + u"x"_s, u"./a.png"_s, u"a.png"_s, fits, tooLong });
    EXPECT_THAT(images.keys(), ElementsAre(fits, u"./a.png"_s, u"a.png"_s));
    EXPECT_THAT(warnings,
        ElementsAre(warning(u"../secret.png"_s), warning(tooLong.first(100)), warning(u"/etc/x.png"_s),
            warning(longest.first(100)), warning(longest.first(100)), warning(u"file:///x.png"_s), warning(u"z.png"_s),
            warning(family.repeated(100))));
}

TEST_F(SheetPicturesTest, A_sheet_shows_small_by_reference_what_lies_in_the_library_and_is_a_picture_by_its_bytes)
{
    write("images/a b.png", encodedPicture("png", { 1000, 500 }));
    write("no.txt", encodedPicture("webp", { 7, 7 }));
    write("small.gif", gifOf({ 20, 30 }, 9));
    write("picture.svg", "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"9\" height=\"9\"/>");
    write("broken.png", goodIcon.first(goodIcon.size() / 2));
    write("largest.png", padded(photo(0), 10'485'760));
    write("too large.png", padded(photo(0), 10'485'761));
    root.write("outside/secret.png", encodedPicture("png", { 9, 9 }));
    write("images/\xFF.png", encodedPicture("png", { 9, 9 }));
    root.link("library/inner.png", "images/a b.png");
    root.link("library/outer.png", "../outside/secret.png");
    root.link("library/loop.png", "loop.png");
    root.makeFifo("library/fifo.png");
    write("x.md",
        "![](images/a%20b.png) [![](<images/a b.png>)](y) ![](no.txt)\n\n| ![](largest.png) |\n|---|\n\n![](small.gif) "
        "![](picture.svg) ![](broken.png) ![](<too large.png>) ![](inner.png) ![](outer.png) ![](loop.png) "
        "![](fifo.png) ![](../outside/secret.png) ![](images/%FF.png) ![](images) ![](/dev/zero) ![](x.md) "
        "![](gone.png) ![](http://x/y.png) ![]() `![](code.png)`");
    auto const sheet = load().value(0);
    QMap<QString, QSize> sizes;
    for (auto const& [reference, image] : sheet.images.asKeyValueRange())
        sizes.insert(reference, image.cgImage.size());
    EXPECT_EQ(sizes,
        (QMap<QString, QSize> { { u"images/a%20b.png"_s, { 720, 360 } }, { u"images/a b.png"_s, { 720, 360 } },
            { u"inner.png"_s, { 720, 360 } }, { u"largest.png"_s, { 720, 540 } }, { u"no.txt"_s, { 7, 7 } },
            { u"small.gif"_s, { 20, 30 } } }));
    EXPECT_TRUE(sheet.iconWarnings.isEmpty() && !sheet.error);
}

TEST_F(SheetPicturesTest, Icons_that_are_no_static_png_of_the_one_size_are_warned_of)
{
    for (auto const& [name, picture] :
        std::initializer_list<std::pair<char const*, QByteArray>> { { "GOOD.PNG", goodIcon },
            { "low.png", encodedPicture("png", { 256, 255 }) }, { "renamed.png", encodedPicture("jpeg", { 256, 256 }) },
            { "animated.png", withChunks(goodIcon, animationChunk(2)) },
            { "still.png", withChunks(goodIcon, animationChunk(1)) },
            { "torn.png", goodIcon.first(goodIcon.size() / 2) }, { "icon.gif", goodIcon }, { "png", goodIcon },
            { "empty.png", "" }, { "largest.png", padded(goodIcon, 262'144) },
            { "too large.png", padded(goodIcon, 262'145) } })
        write(name, picture);
    auto const [images, warnings] = icons({ u"GOOD.PNG"_s, u"low.png"_s, u"renamed.png"_s, u"animated.png"_s,
        u"still.png"_s, u"torn.png"_s, u"largest.png"_s, u"too large.png"_s, u"icon.gif"_s, u"png"_s, u"empty.png"_s });
    EXPECT_THAT(images.keys(), ElementsAre(u"GOOD.PNG"_s, u"largest.png"_s, u"still.png"_s));
    EXPECT_THAT(warnings,
        ElementsAre(warning(u"animated.png"_s), warning(u"empty.png"_s), warning(u"icon.gif"_s), warning(u"low.png"_s),
            warning(u"png"_s), warning(u"renamed.png"_s), warning(u"too large.png"_s), warning(u"torn.png"_s)));
}

TEST_F(SheetPicturesTest, A_content_is_decoded_once_and_never_again_while_it_stays)
{
    write("one.png", photo(1));
    write("copy of one.png", photo(1));
    write("icon.png", goodIcon);
    write("a.md", "![](one.png) ![](./one.png)");
    write("b.md", "![](<copy of one.png>) ![](icon.png)");
    for (auto const* name : { "c.quillory.json", "d.quillory.json" })
        write(name, R"({"schemaVersion":1,"title":"K","icon":"icon.png",
            "sections":[{"id":"a","title":"A","icon":"icon.png","entries":[]}]})");
    auto const first = load();
    ASSERT_EQ(first.size(), 4);
    EXPECT_EQ(decoder.decodes, 3); // the photo, and the icon once for each use
    EXPECT_EQ(first[0].images.first(), first[1].images[u"copy of one.png"_s]);
    EXPECT_EQ(first[2].images.size(), 1);
    EXPECT_EQ(first[3].images.size(), 1);

    write("b.md", "another text ![](<copy of one.png>) ![](icon.png)");
    EXPECT_EQ(load(first)[0], first[0]);
    EXPECT_EQ(decoder.decodes, 3);

    // The sheets stay as they are, their pictures don't.
    write("one.png", photo(2));
    write("icon.png", "broken");
    auto const changed = load(first);
    EXPECT_EQ(decoder.decodes, 4);
    EXPECT_NE(changed[0], first[0]);
    EXPECT_TRUE(changed[2].images.isEmpty());
    EXPECT_EQ(changed[2].iconWarnings, QStringList(warning(u"icon.png"_s)));
    write("icon.png", goodIcon);
    EXPECT_EQ(load(changed)[2].iconWarnings, QStringList());
}

}
}
