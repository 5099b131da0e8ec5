#include "Markdown/PaddedTables.h"
#include "Markdown/Document.h"
#include "support/Cases.h"
#include "support/MarkdownSamples.h"
#include "support/ParserXml.h"

namespace Quillory {
namespace {

using Markup::paddedCellBound;

// A cell that the parser adds stands nowhere in the source.
qsizetype paddedCells(QByteArray const& text)
{
    static QRegularExpression const added(u"<table_cell sourcepos=\"\\d+:\\d+-\\d+:0\""_s);
    return parserXml(text, CMARK_OPT_SOURCEPOS).count(added);
}

bool hasTable(QByteArray const& text)
{
    auto const document = Markup::Document::parsingUtf8(text);
    return std::ranges::any_of(
        document.elements(), [](auto const& element) { return element.kind == Markup::RawMarkupKind::table; });
}

TEST(PaddedTables, The_bound_is_never_below_the_cells_that_the_parser_adds_and_often_there)
{
    QByteArrayList texts;
    forEachCase(u"padded"_s, [&](auto const& text) { texts << bytesIn(text); });
    for (std::uint32_t seed = 0; seed < 20'000; ++seed)
        texts << MarkdownSamples::randomTables(seed);
    qsizetype padded = 0;
    qsizetype tight = 0;
    for (auto const& text : texts) {
        auto const added = paddedCells(text);
        ASSERT_GE(paddedCellBound(text), added) << text.toStdString();
        padded += added > 0 ? 1 : 0;
        tight += added > 0 && paddedCellBound(text) == added ? 1 : 0;
    }
    EXPECT_GT(padded, 5'000) << "the samples must pad";
    EXPECT_GT(tight, padded / 4) << "the bound is meant to be near";
    forEachCase(u"full"_s, [](auto const& text) { EXPECT_EQ(paddedCellBound(bytesIn(text)), 0); });
}

QByteArray header(qsizetype columns)
{
    return QByteArray("|a").repeated(columns) + "|\n" + QByteArray("|-").repeated(columns) + "|\n";
}

TEST(PaddedTables, Past_the_limit_of_padded_cells_a_text_is_parsed_without_tables)
{
    for (auto const* const row : { "a\n", "\v\n", "|\\|\n", "a\r" })
        EXPECT_FALSE(hasTable(header(3'000) + QByteArray(row).repeated(6'000))) << row;
    auto const honest = header(10) + QByteArray("| 1| 2| 3| 4| 5| 6| 7| 8| 9|10|\n").repeated(60'000);
    EXPECT_EQ(paddedCellBound(honest), 0);
    EXPECT_TRUE(hasTable(honest));
    auto const atLimit = header(1'025) + QByteArray("b\n").repeated(512);
    EXPECT_EQ(paddedCellBound(atLimit), Markup::paddedCellLimit);
    EXPECT_TRUE(hasTable(atLimit));
    EXPECT_FALSE(hasTable(atLimit + QByteArray("|b").repeated(1'024) + "\n"));
}

}
}
