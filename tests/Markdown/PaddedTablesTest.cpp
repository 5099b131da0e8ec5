#include "Markdown/PaddedTables.h"
#include "Markdown/Document.h"
#include "support/MarkdownSamples.h"
#include "support/ParserTree.h"
#include "support/Test.h"

#include <algorithm>

namespace Quillory {
namespace {

qsizetype boundOf(std::string_view text)
{
    return Markup::paddedCellBound(QByteArrayView(text.data(), static_cast<qsizetype>(text.size())));
}

// A cell that the parser adds stands nowhere in the source.
qsizetype paddedCells(std::string_view text)
{
    ParserTree const tree(text);
    qsizetype padded = 0;
    auto const enter = [&](cmark_node* node) {
        padded += ParserTree::typeOf(node) == "table_cell" && cmark_node_get_end_column(node) == 0 ? 1 : 0;
        return true;
    };
    ParserTree::walk(tree.root(), enter, [](cmark_node*) { });
    return padded;
}

bool hasTable(std::string_view text)
{
    auto const document = Markup::Document::parsingUtf8(
        QByteArrayView(text.data(), static_cast<qsizetype>(text.size())));
    return std::ranges::any_of(
        document.elements(), [](auto const& element) { return element.kind == Markup::RawMarkupKind::table; });
}

TEST(PaddedTables, The_bound_is_never_below_the_cells_that_the_parser_adds)
{
    std::vector<std::string> texts {
        "|a|b|c|\n|-|-|-|\nx\n|y\n|\n\n|z\n",
        "|a|b|c|\n|-|-|-|\n\v\n\v\n\f\nx\n",      // a line of vertical tabs is a row
        "a\n     >| b | c\n--|--|--\nx\n",         // a quote's mark that is text
        "\v|a|b\n-|-|-\nx\ny\n",
        "- 1. > |a|b|\n     > |-|-|\n     > x\n",
        "\uFEFF|a|b|\n|-|-|\nx\n",
        "a|b\\|c\n-|-\nx|y\nx\\|y\n",
        "w\n|a|b|\n|-|-|\nx\n|c|d|e|\n|-|-|-|\ny\n",
    };
    for (std::uint32_t seed = 0; seed < 20'000; ++seed)
        texts.push_back(MarkdownSamples::randomTables(seed));
    qsizetype padded = 0;
    qsizetype tight = 0;
    for (auto const& text : texts) {
        auto const added = paddedCells(text);
        ASSERT_GE(boundOf(text), added) << text;
        padded += added > 0 ? 1 : 0;
        tight += added > 0 && boundOf(text) == added ? 1 : 0;
    }
    EXPECT_GT(padded, 5'000) << "the samples must pad";
    EXPECT_GT(tight, padded / 4) << "the bound is meant to be near";
}

TEST(PaddedTables, The_bound_of_full_tables_is_nought)
{
    char const* const texts[] { "|a|b|\n|-|-|\n|1|2|\n|3||\n", "a|b\n-|-\n1|2\n", "|a|b|\r\n|:-|-:|\r\n|1|2|\r\n",
        "|a|b|\r|-|-|\r|1|2|", "> |a|b|\n> |-|-|\n> |1|2|\n", "- |a|b|\n  |-|-|\n  |1|2|\n\n- c",
        "1. > a|b\n   > -|-\n   > 1|2\n", "|a\\|b|c|\n|-|-|\n|1\\|2|`x\\|y`|\n",
        "| a | b |\n| --- | --- |\n| 1 | 2 | \n", "|a|b|\n|-|-|\n\nwords\nmore\n", "a\n---\nb\n",
        "---\ntitle: x\n---\n", "" };
    for (auto const* const text : texts)
        EXPECT_EQ(boundOf(text), 0) << text;
}

TEST(PaddedTables, A_small_text_of_many_padded_cells_is_parsed_without_tables)
{
    auto const head = MarkdownSamples::repeated("|a", 3'000) + "\n" + MarkdownSamples::repeated("|-", 3'000) + "\n";
    for (auto const* const row : { "a\n", "\v\n", "|\\|\n", "a\r" })
        EXPECT_FALSE(hasTable(head + MarkdownSamples::repeated(row, 6'000))) << row;
}

TEST(PaddedTables, A_large_honest_table_and_one_at_the_limit_stay_tables)
{
    auto const text = MarkdownSamples::repeated("|a", 10) + "|\n" + MarkdownSamples::repeated("|-", 10) + "|\n"
        + MarkdownSamples::repeated("| 1| 2| 3| 4| 5| 6| 7| 8| 9|10|\n", 60'000);
    EXPECT_EQ(boundOf(text), 0);
    EXPECT_TRUE(hasTable(text));

    auto const head = MarkdownSamples::repeated("|a", 1'025) + "\n" + MarkdownSamples::repeated("|-", 1'025) + "\n";
    auto const atLimit = head + MarkdownSamples::repeated("b\n", 512);
    EXPECT_EQ(boundOf(atLimit), Markup::paddedCellLimit);
    EXPECT_TRUE(hasTable(atLimit));
    EXPECT_FALSE(hasTable(atLimit + MarkdownSamples::repeated("|b", 1'024) + "\n"));
}

}
}
