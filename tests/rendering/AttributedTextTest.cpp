#include "rendering/AttributedText.h"

#include "support/Dice.h"
#include "support/Test.h"

namespace Quillory {
namespace {

double spacingAt(AttributedText const& text, qsizetype location)
{
    auto const run = text.paragraphRuns()[static_cast<std::size_t>(text.paragraphRunAt(location))];
    return text.paragraphStyle(run).paragraphSpacing;
}

TEST(AttributedText, A_paragraph_takes_the_style_of_its_end)
{
    Dice dice(11);
    for (int round = 0; round < 2'000; ++round) {
        AttributedText::Builder builder;
        for (auto pieces = dice.below(12); pieces > 0; --pieces) {
            auto const piece = dice.anyOf(QStringList { u"\n"_s, u"ab"_s, u"a\nb"_s });
            builder.append(piece, {}, { .paragraphSpacing = dice.below(4) + 0.0 });
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
