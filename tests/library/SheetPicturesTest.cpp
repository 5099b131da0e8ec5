#include "library/SheetPictures.h"

#include "library/ForeignBytes.h"

#include "library/LibraryLoad.h"
#include "linux/files/PosixFileSystem.h"
#include "linux/qt/QtPictureDecoder.h"
#include "platform/InProcessSandbox.h"
#include "support/Cases.h"
#include "support/SamplePictures.h"
#include "support/TemporaryFolder.h"

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
        InProcessSandbox sandbox(ForeignBytes::interpreter(decoder));
        SheetPictures pictures(*folder, sandbox);
        pictures.askFor({ .shortcuts = sheet }, {}, {});
        pictures.wait({}, {});
        return pictures.prepareIcons(sheet);
    }

    QList<Sheet> load(QList<Sheet> const& previous = {}) const
    {
        return loadLibrary(files, decoder, root.path("library"), previous).value();
    }

    TemporaryFolder root;
    PosixFileSystem files;
    QtPictureDecoder decoder;
};

TEST_F(SheetPicturesTest, Icons_are_static_png_of_the_one_size_and_all_others_are_warned_of_once_in_order)
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
    QStringList references, shown, warned;
    forEachCase(u"icons"_s, [&](auto const& row) {
        references.prepend(row[0].toString());
        (row[1].toBool() ? shown : warned) << (row[1].toBool() ? references.first() : warning(references.first()));
    });
    auto const [images, warnings] = icons(references + references);
    EXPECT_EQ(images.keys(), shown);
    EXPECT_EQ(warnings, warned);

    auto const fits = u"./"_s.repeated(508) + u"GOOD.PNG"_s; // 1024 bytes, which are looked at
    auto const family = u"\U0001F468\u200D\U0001F469\u200D\U0001F467"_s; // one character of five scalars
    EXPECT_EQ(icons({ fits }).images.size(), 1);
    EXPECT_EQ(icons({ u"./"_s + fits }).warnings, QStringList(warning(fits.first(100))));
    EXPECT_EQ(icons({ family.repeated(101) }).warnings, QStringList(warning(family.repeated(100))));
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
    QByteArray text;
    QMap<QString, QSize> expected, sizes;
    forEachCase(u"pictures"_s, [&](auto const& row) {
        text += "![](<" + row[0].toString().toUtf8() + ">) ";
        if (!row[1].isNull())
            expected.insert(row[0].toString(), { row[1].toInt(), row[2].toInt() });
    });
    write("x.md", text);
    auto const sheet = load().value(0);
    for (auto const& [reference, image] : sheet.images.asKeyValueRange())
        sizes.insert(reference, image.cgImage.size());
    EXPECT_EQ(sizes, expected);
    EXPECT_TRUE(sheet.iconWarnings.isEmpty() && !sheet.error);
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
    auto const drawn = [](Sheet const& sheet, QString const& reference) {
        return sheet.images[reference].cgImage.cacheKey(); // changes with each decoding
    };
    auto const first = load();
    ASSERT_EQ(first.size(), 4);
    EXPECT_EQ(drawn(first[0], u"one.png"_s), drawn(first[0], u"./one.png"_s));
    EXPECT_EQ(drawn(first[0], u"one.png"_s), drawn(first[1], u"copy of one.png"_s));
    EXPECT_EQ(drawn(first[2], u"icon.png"_s), drawn(first[3], u"icon.png"_s));
    EXPECT_EQ(first[0].images.first(), first[1].images[u"copy of one.png"_s]);

    write("b.md", "another text ![](<copy of one.png>) ![](icon.png)");
    auto const again = load(first);
    EXPECT_EQ(again[0], first[0]);
    EXPECT_EQ(drawn(again[1], u"copy of one.png"_s), drawn(first[1], u"copy of one.png"_s));
    EXPECT_EQ(drawn(again[2], u"icon.png"_s), drawn(first[2], u"icon.png"_s));

    // The sheets stay as they are, their pictures don't.
    write("one.png", photo(2));
    write("icon.png", "broken");
    auto const changed = load(first);
    EXPECT_NE(changed[0], first[0]);
    EXPECT_NE(drawn(changed[0], u"one.png"_s), drawn(first[0], u"one.png"_s));
    EXPECT_TRUE(changed[2].images.isEmpty());
    EXPECT_EQ(changed[2].iconWarnings, QStringList(warning(u"icon.png"_s)));
    write("icon.png", goodIcon);
    EXPECT_EQ(load(changed)[2].iconWarnings, QStringList());
}

}
}
