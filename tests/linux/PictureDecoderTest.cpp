#include "linux/qt/QtPictureDecoder.h"
#include "support/SamplePictures.h"
#include "support/Test.h"

#include <QColor>
#include <QFile>

#include <sys/resource.h>

namespace Quillory {
namespace {

using Container = PictureDecoder::Container;
using Properties = PictureDecoder::Properties;

QByteArray pictureOf(Properties const& properties)
{
    static constexpr std::array formats { "png", "jpeg", "gif", "webp", "tiff", "bmp" };
    if (properties.container == Container::gif)
        return gifOf(properties.size, properties.frameCount);
    auto const picture = encodedPicture(formats.at(static_cast<std::size_t>(properties.container)), properties.size);
    return properties.frameCount == 1 ? picture : withChunks(picture, animationChunk(properties.frameCount));
}

TEST(QtPictureDecoder, A_picture_tells_its_kind_frames_and_size_and_is_decoded_within_bounds)
{
    QtPictureDecoder const decoder;
    for (auto const& properties : {
             Properties { Container::png, 1, { 256, 256 } },
             Properties { Container::png, 7, { 256, 255 } },
             Properties { Container::jpeg, 1, { 1440, 1000 } },
             Properties { Container::gif, 1, { 721, 3 } },
             Properties { Container::gif, 3, { 5, 4 } },
             Properties { Container::webp, 1, { 30, 900 } },
             Properties { Container::tiff, 1, { 720, 720 } },
             Properties { Container::bmp, 1, { 2000, 1 } },
         }) {
        SCOPED_TRACE(static_cast<int>(properties.container));
        auto const bytes = pictureOf(properties);
        EXPECT_EQ(decoder.properties(bytes), properties);
        auto const image = decoder.image(bytes);
        ASSERT_TRUE(image);
        EXPECT_EQ(image->size(), properties.size);
        auto const small = decoder.thumbnail(bytes, 720);
        ASSERT_TRUE(small);
        auto const scale = std::min(1.0, 720.0 / std::max(properties.size.width(), properties.size.height()));
        EXPECT_NEAR(small->width(), std::max(properties.size.width() * scale, 1.0), 0.51);
        EXPECT_NEAR(small->height(), std::max(properties.size.height() * scale, 1.0), 0.51);
        EXPECT_LE(std::max(small->width(), small->height()), 720);
    }
}

TEST(QtPictureDecoder, What_is_no_picture_gives_nothing)
{
    QtPictureDecoder const decoder;
    for (auto const& bytes : { QByteArray(), QByteArray("x"), QByteArray("<svg xmlns=\"http://www.w3.org/2000/svg\"/>"),
             QByteArray("P3 1 1 255 1 2 3\n"), QByteArray("#define a_width 1\n#define a_height 1\n"),
             QByteArray("/* XPM */ static char * a[] = {\"1 1 1 1\",\"a c #000\",\"a\"};"),
             QByteArray("\x89PNG\r\n\x1A\n"), QByteArray("\xFF\xD8\xFF"), QByteArray("GIF89a"),
             QByteArray("RIFF\x10\0\0\0WEBPVP8 ", 16), QByteArray("II*\0", 4), QByteArray("BM") }) {
        EXPECT_EQ(decoder.properties(bytes), std::nullopt) << bytes.toStdString();
        EXPECT_EQ(decoder.image(bytes), std::nullopt) << bytes.toStdString();
        EXPECT_EQ(decoder.thumbnail(bytes, 720), std::nullopt) << bytes.toStdString();
    }
}

TEST(QtPictureDecoder, A_photo_stands_upright_whichever_way_the_camera_was_held)
{
    QtPictureDecoder const decoder;
    // Dark is the left half as it is stored. The corners from left to right, then below.
    constexpr std::array seen { "#.#.", ".#.#", ".#.#", "#.#.", "##..", "##..", "..##", "..##" };
    for (int trial = 0; trial < 32; ++trial) {
        auto const* const format = std::array { "jpeg", "png", "webp", "tiff" }.at(static_cast<std::size_t>(trial) / 8);
        auto const orientation = trial % 8 + 1;
        SCOPED_TRACE(Message() << format << ' ' << orientation);
        QFile file(QString::fromLatin1(QUILLORY_ORIENTED "/%1.%2").arg(orientation).arg(QString::fromLatin1(format)));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        auto const photo = file.readAll();
        auto const small = decoder.thumbnail(photo, 24);
        ASSERT_TRUE(small);
        EXPECT_EQ(small->size(), orientation < 5 ? QSize(24, 12) : QSize(12, 24));
        std::string corners;
        for (auto const y : { 2, small->height() - 2 }) {
            for (auto const x : { 2, small->width() - 2 })
                corners += qGray(small->pixel(x, y)) < 60 ? '#' : '.';
        }
        EXPECT_EQ(corners, seen.at(static_cast<std::size_t>(orientation - 1)));
        EXPECT_EQ(decoder.image(photo)->size(), QSize(48, 24));
    }
}

TEST(QtPictureDecoder, Bitmaps_come_in_the_layout_of_painting_with_their_colours_and_no_texts)
{
    QtPictureDecoder const decoder;
    for (bool const hasAlpha : { false, true }) {
        auto const text = pngChunk("tEXt", QByteArray("Title\0secret", 12));
        auto const image = decoder.image(withChunks(encodedPicture("png", { 3, 2 }, hasAlpha), text)).value();
        EXPECT_EQ(image.format(), hasAlpha ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32);
        EXPECT_NEAR(image.pixelColor(2, 1).green(), 200, 2);
        EXPECT_EQ(image.pixelColor(2, 1).alpha(), hasAlpha ? 128 : 255);
        EXPECT_TRUE(image.textKeys().isEmpty());
    }
}

TEST(QtPictureDecoder, A_small_file_that_unpacks_to_a_huge_picture_is_refused_without_the_memory)
{
    QtPictureDecoder const decoder;
    auto const promising = promisingPng({ 50'000, 50'000 });
    EXPECT_LT(promising.size(), 10'000);
    // A thousand texts of eight megabytes each, packed to as many KB.
    auto const text = pngChunk("zTXt", QByteArray("Title\0\0", 7) + qCompress(QByteArray(7'900'000, 'x'), 9).sliced(4));
    auto const chatty = withChunks(encodedPicture("png", { 9, 9 }), text.repeated(100));
    auto const huge = gifOf({ 65'535, 65'535 }, 1);
    auto const peakKilobytes = [] {
        rusage usage {};
        return getrusage(RUSAGE_SELF, &usage), usage.ru_maxrss;
    };
    auto const before = peakKilobytes();
    for (auto const& bytes : { promising, huge }) {
        EXPECT_EQ(decoder.image(bytes), std::nullopt);
        EXPECT_EQ(decoder.thumbnail(bytes, 720), std::nullopt);
    }
    EXPECT_EQ(decoder.properties(promising)->size, QSize(50'000, 50'000));
    EXPECT_TRUE(decoder.thumbnail(chatty, 720));
    EXPECT_LT(peakKilobytes() - before, 20'000);
}

}
}
