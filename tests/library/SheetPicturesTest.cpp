#include "library/SheetPictures.h"

#include "library/LibraryLoad.h"
#include "support/FakeFileSystem.h"
#include "support/FakePictureDecoder.h"

#include <gmock/gmock.h>

namespace Quillory {
namespace {

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using Container = PictureDecoder::Container;
using Damage = FakePictureDecoder::Damage;

QString const library = u"/library"_s;
PictureDecoder::Properties const iconProperties { Container::png, 1, { 256, 256 } };
QByteArray const goodIcon = FakePictureDecoder::picture(iconProperties);

QByteArray photo(int mark)
{
    return FakePictureDecoder::picture({ Container::jpeg, 1, { 4000, 3000 } }, mark);
}

QByteArray padded(QByteArray const& picture, qsizetype size)
{
    return picture + QByteArray(size - picture.size(), ' ');
}

QString warning(QString const& shown)
{
    return u"Icon "_s + shown
        + u": use a readable, static 256 × 256 PNG inside the library, no larger than 256 KB. Showing a placeholder."_s;
}

class SheetPicturesTest : public testing::Test {
protected:
    SheetPicturesTest() { files.addFolder(library); }

    PreparedIcons icons(QStringList references)
    {
        ShortcutSheet sheet;
        sheet.icon = references.takeFirst();
        for (auto const& reference : references)
            sheet.sections.append({ .icon = reference });
        auto const folder = files.openFolder(library).value();
        return SheetPictures(*folder, decoder).prepareIcons(sheet);
    }

    QList<Sheet> load(QList<Sheet> const& previous = {}) const
    {
        return loadLibrary(files, decoder, library, previous).value();
    }

    FakeFileSystem files;
    FakePictureDecoder decoder;
};

TEST_F(SheetPicturesTest, Warnings_come_once_a_reference_in_order_and_show_a_hundred_characters)
{
    files.write(library, "a.png", goodIcon);
    auto const family = u"\U0001F468\u200D\U0001F469\u200D\U0001F467"_s; // one character of five scalars
    auto const longest = u"a/"_s.repeated(512);
    auto const [images, warnings] = icons({ u"z.png"_s, u"a.png"_s, u"../secret.png"_s, u"z.png"_s, u"file:///x.png"_s,
        u"/etc/x.png"_s, family.repeated(101), longest, longest + u"x"_s, u"./a.png"_s, u"a.png"_s });
    EXPECT_THAT(images.keys(), ElementsAre(u"./a.png"_s, u"a.png"_s));
    EXPECT_THAT(warnings,
        ElementsAre(warning(u"../secret.png"_s), warning(u"/etc/x.png"_s), warning(longest.first(100)),
            warning(longest.first(100)), warning(u"file:///x.png"_s), warning(u"z.png"_s),
            warning(family.repeated(100))));
}

TEST_F(SheetPicturesTest, An_icon_reference_is_looked_at_up_to_1024_bytes)
{
    files.write(library, "a.png", goodIcon);
    files.write(library, "aa.png", goodIcon);
    auto const fits = u"./"_s.repeated(509) + u"aa.png"_s;
    auto const tooLong = u"./"_s.repeated(510) + u"a.png"_s;
    EXPECT_EQ(fits.size(), 1024);
    EXPECT_THAT(icons({ fits, tooLong }).images.keys(), ElementsAre(fits));
}

TEST_F(SheetPicturesTest, Markdown_pictures_are_small_by_reference_and_missing_in_silence)
{
    files.write(library, "images/a b.jpg", photo(1));
    files.write(library, "largest.png", padded(photo(2), 10'485'760));
    files.write(library, "too large.png", padded(photo(3), 10'485'761));
    files.write(library, "small.gif", FakePictureDecoder::picture({ Container::gif, 9, { 20, 30 } }));
    files.write(library, "broken.png", FakePictureDecoder::picture(iconProperties, 0, Damage::cannotBeDecoded));
    files.write(library, "x.md",
        "![](images/a%20b.jpg) [![](<images/a b.jpg>)](y)\n\n| ![](largest.png) |\n|---|\n\n![](small.gif) "
        "![](broken.png) ![](<too large.png>) ![](gone.png) ![](http://x/y.png) ![]() `![](code.png)`");
    auto const sheet = load().value(0);
    QMap<QString, QSize> sizes;
    for (auto const& [reference, image] : sheet.images.asKeyValueRange())
        sizes.insert(reference, image.cgImage.size());
    EXPECT_EQ(sizes,
        (QMap<QString, QSize> { { u"images/a%20b.jpg"_s, { 720, 540 } }, { u"images/a b.jpg"_s, { 720, 540 } },
            { u"largest.png"_s, { 720, 540 } }, { u"small.gif"_s, { 20, 30 } } }));
    EXPECT_TRUE(sheet.iconWarnings.isEmpty() && !sheet.error);
}

TEST_F(SheetPicturesTest, A_content_is_decoded_once_and_never_again_while_it_stays)
{
    files.write(library, "one.jpg", photo(1));
    files.write(library, "copy of one.jpg", photo(1));
    files.write(library, "icon.png", goodIcon);
    files.write(library, "a.md", "![](one.jpg) ![](./one.jpg)");
    files.write(library, "b.md", "![](<copy of one.jpg>) ![](icon.png)");
    QByteArray const keys = R"({"schemaVersion":1,"title":"K","icon":"icon.png",
        "sections":[{"id":"a","title":"A","icon":"icon.png","entries":[]}]})";
    files.write(library, "c.quillory.json", keys);
    files.write(library, "d.quillory.json", keys);
    auto const first = load();
    ASSERT_EQ(first.size(), 4);
    EXPECT_EQ(decoder.decodes(), 3); // the photo, and the icon once for each use
    EXPECT_EQ(first[0].images.first(), first[1].images[u"copy of one.jpg"_s]);
    EXPECT_EQ(first[2].images.size(), 1);
    EXPECT_EQ(first[3].images.size(), 1);

    files.write(library, "b.md", "another text ![](<copy of one.jpg>) ![](icon.png)");
    EXPECT_EQ(load(first)[0], first[0]);
    EXPECT_EQ(decoder.decodes(), 3);

    // The sheets stay as they are, their pictures don't.
    files.write(library, "one.jpg", photo(2));
    files.write(library, "icon.png", "broken");
    auto const changed = load(first);
    EXPECT_EQ(decoder.decodes(), 4);
    EXPECT_NE(changed[0], first[0]);
    EXPECT_TRUE(changed[2].images.isEmpty());
    EXPECT_EQ(changed[2].iconWarnings, QStringList(warning(u"icon.png"_s)));
    files.write(library, "icon.png", goodIcon);
    EXPECT_EQ(load(changed)[2].iconWarnings, QStringList());
}

}
}
