#include "rendering/AttributedText.h"

#include <gmock/gmock.h>

#include <random>

namespace Quillory {
namespace {

double spacingAt(AttributedText const& text, qsizetype location)
{
    auto const run = text.paragraphRuns()[static_cast<std::size_t>(text.paragraphRunAt(location))];
    return text.paragraphStyle(run).paragraphSpacing;
}

TEST(AttributedText, A_paragraph_takes_the_style_of_its_end)
{
    std::mt19937 random(11);
    std::uniform_int_distribution<int> anyPiece(0, 11);
    for (int round = 0; round < 2'000; ++round) {
        AttributedText::Builder builder;
        for (auto pieces = anyPiece(random); pieces > 0; --pieces) {
            auto const kind = anyPiece(random);
            builder.append(kind % 3 == 0 ? u"\n"
                    : kind % 3 == 1      ? u"ab"
                                         : u"a\nb",
                {}, { .paragraphSpacing = static_cast<double>(kind / 3) });
        }
        auto const text = std::move(builder).build();
        auto const whole = text.withWholeParagraphs();
        ASSERT_EQ(whole.string(), text.string());
        qsizetype covered = 0;
        for (auto const& run : whole.paragraphRuns()) {
            ASSERT_EQ(run.location, covered);
            covered += run.length;
        }
        ASSERT_EQ(covered, text.length());
        for (qsizetype location = 0; location < text.length(); ++location) {
            auto const feed = text.string().indexOf(u'\n', location);
            ASSERT_EQ(spacingAt(whole, location), spacingAt(text, feed < 0 ? text.length() - 1 : feed));
        }
    }
}

TEST(AttributedText, Lets_go_of_its_pictures_with_its_last_copy)
{
    PreparedImage const picture { .cgImage = QImage(1, 1, QImage::Format_RGB32) };
    {
        AttributedText::Builder builder;
        builder.appendAttachment({ .attachment = Attachment { picture, 1, 1 } }, {});
        auto const text = std::move(builder).build();
        EXPECT_FALSE(picture.cgImage.isDetached());
    }
    EXPECT_TRUE(picture.cgImage.isDetached());
}

TEST(AttributedText, Texts_are_equal_however_their_attributes_were_added)
{
    auto const made = [](bool unusedFirst, QStringView last) {
        AttributedText::Builder builder;
        if (unusedFirst)
            builder.add(TextAttributes { .strikethrough = true });
        builder.append(u"a", { .kern = 1 }, {});
        builder.append(last, { .kern = 2 }, { .paragraphSpacing = 3 });
        return std::move(builder).build();
    };
    EXPECT_EQ(made(true, u"b"), made(false, u"b"));
    EXPECT_NE(made(true, u"b"), made(false, u"c"));
    EXPECT_NE(made(true, u"b"), made(true, u"bb"));
}

}
}
