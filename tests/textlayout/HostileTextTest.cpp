#include "textlayout/TestTexts.h"
#include "textlayout/TextUnits.h"

#include <QGlyphRun>
#include <QImage>
#include <QPainter>
#include <QRawFont>

#include <gtest/gtest.h>

#include <string>

namespace Quillory {
namespace {

struct Case {
    std::string name;
    QString string;
};

class HostileText : public testing::TestWithParam<Case> { };

TEST_P(HostileText, Is_cut_laid_out_painted_and_hit_without_harm)
{
    auto const& string = GetParam().string;
    for (auto const width : { 1.0, 400.0, 12'000.0 }) {
        auto layout = layoutOf(plainText(string), width);
        QImage image(400, 300, QImage::Format_ARGB32_Premultiplied);
        for (auto const share : { 0.0, 0.5, 1.0 }) {
            auto const top = layout.height() * share;
            auto const y = top + layout.layOutVisible(top, 300);
            QPainter painter(&image);
            painter.translate(0, -y);
            layout.paint(painter, QRectF(0, y, 400, 300), ColorSet::fromPalette(QPalette()));
            auto const hit = layout.characterIndexAt({ 17, y + 20 });
            ASSERT_GE(hit, 0);
            ASSERT_LT(hit, string.size());
            ASSERT_GT(layout.boundingRect(hit, 1).height(), 0);
        }
        EXPECT_GT(layout.height(), 0);
    }
}

TEST_P(HostileText, Is_cut_into_stretches_without_gaps_or_halves)
{
    auto const text = plainText(GetParam().string);
    auto const starts = textUnitStarts(text, { 0, text.length() }, TableUnits::whole);
    ASSERT_EQ(starts.front(), 0U);
    ASSERT_EQ(starts.back(), static_cast<quint32>(text.length()));
    for (std::size_t unit = 0; unit + 1 < starts.size(); ++unit) {
        ASSERT_LT(starts[unit], starts[unit + 1]);
        ASSERT_LE(starts[unit + 1] - starts[unit], static_cast<quint32>(longestStretch));
        auto const start = static_cast<qsizetype>(starts[unit]);
        if (start > 0 && text.string()[start].isLowSurrogate()) {
            ASSERT_FALSE(text.string()[start - 1].isHighSurrogate()) << start;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(All, HostileText,
    testing::Values(Case { "One_word_without_end", QString(100'000, u'x') },
        Case { "One_paragraph_of_words", QStringLiteral("some words ").repeated(10'000) },
        Case { "Line_and_paragraph_separators", QStringLiteral("a\u2028b\u2029").repeated(3'000) },
        Case { "Noncharacters", QStringLiteral("\uFDD0\uFDD1\uFFFE\uFFFF\uFFFC").repeated(500) },
        Case { "Lone_surrogates",
            QString(4'000, QChar(0xD83D)) + QString(4'000, QChar(0xDE00)) + QString(100, QChar(0xD83D)) },
        Case { "Pairs_of_surrogates", QStringLiteral("\U0001F600").repeated(20'000) },
        Case { "Nulls_and_controls", QString(500, QChar(0)) + QStringLiteral("\r\r\n\f\v\b\x1B\x7F").repeated(200) },
        Case { "Tabs", QString(20'000, u'\t') },
        Case { "Marks_without_end", QStringLiteral("a") + QString(20'000, QChar(0x0301)) },
        Case { "Joiners_without_end", QStringLiteral("\U0001F469\u200D").repeated(5'000) },
        Case { "Embeddings_never_closed", QStringLiteral("\u202B\u2067a").repeated(5'000) },
        Case { "Directions_mixed", QStringLiteral("abc שלום 123 بسم ").repeated(2'000) },
        Case { "Line_feeds_alone", QString(50'000, u'\n') }, Case { "One_character", QStringLiteral("x") },
        Case { "One_line_feed", QStringLiteral("\n") }),
    [](auto const& tested) { return tested.param.name; });

TEST(KeySymbols, Are_drawn_in_every_font_that_is_chosen_for_them)
{
    auto const symbols = u"⌃⌥⇧⌘↩⌤⇥⎋⌫⌦⇪←→↑↓↖↘⇞⇟•☑☐│─"_qs;
    for (auto const family : { FontAttribute::Family::system, FontAttribute::Family::monospaced }) {
        QTextLayout layout(symbols, FontSet::ofDesktop().font({ .family = family, .size = 20 }));
        layout.beginLayout();
        layout.createLine().setLineWidth(10'000);
        layout.endLayout();
        for (qsizetype symbol = 0; symbol < symbols.size(); ++symbol) {
            auto const runs = layout.glyphRuns(static_cast<int>(symbol), 1);
            ASSERT_EQ(runs.size(), 1) << symbol;
            ASSERT_EQ(runs[0].glyphIndexes().size(), 1) << symbol;
            EXPECT_NE(runs[0].glyphIndexes()[0], 0U) << QString(symbols[symbol]).toStdString() << " is missing in "
                                                     << runs[0].rawFont().familyName().toStdString();
        }
    }
}

TEST(HostileRuns, A_paragraph_of_many_runs_is_cut_where_setting_it_up_would_take_long)
{
    TextAttributes bold;
    bold.font.weight = FontAttribute::Weight::bold;
    AttributedText::Builder builder;
    for (int run = 0; run < 5'000; ++run)
        builder.append(u"x", run % 2 == 0 ? TextAttributes {} : bold, {});
    auto const text = std::move(builder).build();
    EXPECT_GT(textUnitStarts(text, { 0, text.length() }, TableUnits::whole).size(), 8U);
}

}
}
