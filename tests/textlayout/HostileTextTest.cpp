#include "support/OddTexts.h"
#include "support/Test.h"
#include "textlayout/TestTexts.h"
#include "textlayout/TextUnits.h"

#include <QGlyphRun>
#include <QImage>
#include <QPainter>
#include <QRawFont>

namespace Quillory {
namespace {

// Each odd piece without end, and what no sheet of Markdown has.
QStringList hostileTexts(qsizetype length)
{
    QStringList texts { u"x"_s, u"\n"_s, QString(50'000, u'\n'), QString(500, QChar(0)),
        u"שלום abc עולם (12) \u05D0\u05B8 ⇧ שלום\nabc שלום\nשלום\n"_s, u"abc שלום 123 بسم "_s.repeated(2'000),
        QString(4'000, QChar(0xD83D)) + QString(4'000, QChar(0xDE00)) + QString(100, QChar(0xD83D)) };
    for (auto const& piece : oddPieces())
        texts.append(piece.repeated(length / piece.size() + 1));
    return texts;
}

TEST(HostileText, Is_cut_laid_out_painted_and_hit_without_harm)
{
    QImage image(400, 300, QImage::Format_ARGB32_Premultiplied);
    for (auto const& string : hostileTexts(3'000)) {
        SCOPED_TRACE(string.left(9).toUtf8().toPercentEncoding().toStdString());
        for (auto const width : { 1.0, 150.0, 12'000.0 }) {
            auto layout = layoutOf(plainText(string), width);
            for (auto const share : { 0.0, 0.5, 1.0 }) {
                auto const top = layout.height() * share;
                auto const y = top + layout.layOutVisible(top, 300);
                QPainter painter(&image);
                painter.translate(0, -y);
                layout.paint(painter, QRectF(0, y, 400, 300), ColorSet::fromPalette(QPalette()));
                auto const hit = layout.characterIndexAt({ 17, y + 20 });
                ASSERT_GE(hit, 0);
                ASSERT_LE(hit, string.size());
                ASSERT_GT(layout.boundingRect(std::min(hit, string.size() - 1), 1).height(), 0);
                if (width == 1.0)
                    continue; // narrower than its letters
                auto const covered = layout.selectionRects({ hit / 2, string.size() }, QRectF(0, y, 400, 300));
                for (auto one = covered.begin(); one != covered.end(); ++one) {
                    for (auto other = covered.begin(); other != one; ++other)
                        ASSERT_LT(one->intersected(*other).width(), 0.01) << "nothing is covered twice";
                }
            }
            EXPECT_GT(layout.height(), 0);
        }
    }
}

TEST(HostileText, Is_cut_into_stretches_without_gaps_or_halves)
{
    for (auto const& string : hostileTexts(20'000)) {
        SCOPED_TRACE(string.left(9).toUtf8().toPercentEncoding().toStdString());
        auto const starts = textUnitStarts(plainText(string), { 0, string.size() }, TableUnits::whole);
        ASSERT_EQ(starts.front(), 0U);
        ASSERT_EQ(starts.back(), static_cast<quint32>(string.size()));
        for (std::size_t unit = 0; unit + 1 < starts.size(); ++unit) {
            ASSERT_LT(starts[unit], starts[unit + 1]);
            ASSERT_LE(starts[unit + 1] - starts[unit], static_cast<quint32>(longestStretch));
            auto const start = static_cast<qsizetype>(starts[unit]);
            ASSERT_FALSE(start > 0 && string[start].isLowSurrogate() && string[start - 1].isHighSurrogate()) << start;
        }
    }
}

TEST(KeySymbols, Are_drawn_in_every_font_that_is_chosen_for_them)
{
    auto const symbols = u"⌃⌥⇧⌘↩⌤⇥⎋⌫⌦⇪←→↑↓↖↘⇞⇟•☑☐│─"_s;
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
    TextAttributes const bold { .font = { .weight = FontAttribute::Weight::bold } };
    AttributedText::Builder builder;
    for (int run = 0; run < 5'000; ++run)
        builder.append(u"x", run % 2 == 0 ? TextAttributes {} : bold, {});
    auto const text = std::move(builder).build();
    EXPECT_GT(textUnitStarts(text, { 0, text.length() }, TableUnits::whole).size(), 8U);
}

}
}
