#include "Markdown/Document.h"
#include "support/MarkdownSamples.h"
#include "support/ParserTree.h"
#include "support/Test.h"

#include <QFile>

#include <algorithm>
#include <array>
#include <memory>
#include <thread>

namespace Quillory {
namespace {

// An element in a line; the strings with their lengths, so that no content can be taken for structure.
std::string line(std::size_t depth, std::string_view kind, std::uint32_t number, std::string_view string,
    std::string_view second = {})
{
    std::string text(string);
    std::ranges::replace(text, '\0', '.'); // a column without alignment
    return std::to_string(depth) + ' ' + std::string(kind) + ' ' + std::to_string(number)
        + quoted(std::string_view(text)) + quoted(second) + '\n';
}

std::string dumpOf(Markup::Document const& document)
{
    static constexpr std::array kinds { "document", "block_quote", "ordered", "bullet", "item", "code_block",
        "html_block", "custom_block", "paragraph", "heading", "thematic_break", "text", "softbreak", "linebreak",
        "code", "html_inline", "custom_inline", "emph", "strong", "strikethrough", "link", "image", "attribute",
        "table", "table_header", "body", "table_row", "table_cell" };
    std::string dump;
    std::vector<std::uint32_t> ends;
    for (std::uint32_t index = 0; index < document.elements().size(); ++index) {
        while (!ends.empty() && ends.back() <= index)
            ends.pop_back();
        auto const element = document.element(index);
        auto const& raw = element.raw();
        dump += line(ends.size(), kinds.at(static_cast<std::size_t>(raw.kind)), raw.number + raw.start,
            element.string().toUtf8().toStdString(), element.secondString().toUtf8().toStdString());
        ends.push_back(raw.end);
    }
    return dump;
}

std::string lineOf(std::size_t depth, cmark_node* node)
{
    auto const type = ParserTree::typeOf(node);
    auto const orEmpty = [](char const* text) { return std::string_view(text ? text : ""); };
    if (type == "list" && cmark_node_get_list_type(node) == CMARK_BULLET_LIST)
        return line(depth, "bullet", 0, "");
    if (type == "list")
        return line(depth, "ordered", static_cast<std::uint32_t>(cmark_node_get_list_start(node)), "");
    if (type == "tasklist")
        return line(depth, "item", cmark_gfm_extensions_get_tasklist_item_checked(node) ? 2 : 1, "");
    if (type == "heading")
        return line(depth, type, static_cast<std::uint32_t>(cmark_node_get_heading_level(node)), "");
    if (type == "code_block")
        return line(depth, type, 0, orEmpty(cmark_node_get_literal(node)), orEmpty(cmark_node_get_fence_info(node)));
    if (type == "link" || type == "image")
        return line(depth, type, 0, orEmpty(cmark_node_get_url(node)), orEmpty(cmark_node_get_title(node)));
    if (type == "table_cell")
        return line(depth, type, 0x10001, "");
    if (type == "table") {
        auto const* const alignments = cmark_gfm_extensions_get_table_alignments(node);
        std::string const columns(alignments, alignments + cmark_gfm_extensions_get_table_columns(node));
        return line(depth, type, 0, columns);
    }
    return line(depth, type, 0, orEmpty(cmark_node_get_literal(node)));
}

// The same of the parser's tree, with the body that a table has in ours.
std::string dumpOf(ParserTree const& tree)
{
    std::string dump;
    std::size_t depth = 0;
    auto const enter = [&](cmark_node* node) {
        depth += ParserTree::typeOf(node) == "table_row" ? 1U : 0U;
        dump += lineOf(depth++, node);
        return true;
    };
    auto const leave = [&](cmark_node* node) {
        auto const type = ParserTree::typeOf(node);
        depth -= type == "table_row" ? 2U : 1U;
        if (type == "table_header")
            dump += line(depth, "body", 0, "");
    };
    ParserTree::walk(tree.root(), enter, leave);
    return dump;
}

Markup::Document documentOf(std::string_view text)
{
    return Markup::Document::parsingUtf8(QByteArrayView(text.data(), static_cast<qsizetype>(text.size())));
}

// Both trees are dumped by the same words, so that these are looked at once.
TEST(Document, Each_kind_of_element_comes_with_its_payload)
{
    QFile text(QStringLiteral(QUILLORY_MARKDOWN_TESTS "/elements.md"));
    QFile dump(QStringLiteral(QUILLORY_MARKDOWN_TESTS "/elements.txt"));
    ASSERT_TRUE(text.open(QIODevice::ReadOnly) && dump.open(QIODevice::ReadOnly));
    EXPECT_EQ(dumpOf(documentOf(text.readAll().toStdString())), dump.readAll().toStdString());
}

TEST(Document, Plain_text_drops_marks_and_keeps_backticks_and_breaks)
{
    for (auto const& [text, plain] :
        std::initializer_list<std::pair<char const*, QString>> { { "# a`b`c", u"a`b`c"_s }, { "a\nb", u"a b"_s },
            { "a\\\nb", u"a\nb"_s }, { "*a* **b** ~~c~~ [d](e 'f') ![g *h*](i) <b>", u"a b c d g h <b>"_s },
            { "[![a `b`](c)](d)", u"a `b`"_s }, { "#", u""_s } })
        EXPECT_EQ(documentOf(text).element(1).plainText(), plain) << text;
}

TEST(Document, Its_tree_is_the_parsers)
{
    auto texts = MarkdownSamples::snippets();
    for (std::uint32_t seed = 0; seed < 4000; ++seed) {
        texts.push_back(MarkdownSamples::random(seed));
        texts.push_back(MarkdownSamples::randomTables(seed));
    }
    for (auto const& text : texts) {
        auto const document = documentOf(text);
        ASSERT_EQ(dumpOf(document), dumpOf(ParserTree(text))) << text;
        ASSERT_EQ(dumpOf(Markup::Document::parsing(QString::fromStdString(text))), dumpOf(document)) << text;
    }
}

TEST(Document, Hostile_texts_give_the_parsers_tree_too)
{
    auto const many = MarkdownSamples::repeated;
    constexpr std::size_t twoMiB = 2'097'152;
    std::pair<char const*, std::string> const texts[] {
        { "nested quotes and lists", many("> 1. ", 25'000) + "a" },
        { "nested strong and strikethrough", many("**a ~b ", 5'000) + "c" + many("~**", 5'000) },
        { "nested images", many("![", 10'000) + many("](a)", 10'000) },
        { "one line", std::string(twoMiB, 'a') },
        { "brackets", std::string(twoMiB, '[') },
        { "quotes", many("> ", twoMiB / 2) },
        { "paragraphs", many("a\n\n", twoMiB / 12) },
        { "two-line tables", many("a|b\n-|-\n", twoMiB / 32) },
        { "columns", many("|a", 2'000) + "\n" + many("|-", 2'000) + "\n" + many(many("|b", 2'000) + "\n", 20) },
    };
    for (auto const& [name, text] : texts) {
        auto const document = documentOf(text);
        auto copy = std::make_unique<Markup::Document>(document);
        EXPECT_TRUE(dumpOf(*copy) == dumpOf(ParserTree(text))) << name;
    }
}

TEST(Document, A_text_that_expands_itself_without_bound_stands_there_as_code)
{
    auto const text = "[a]: /" + std::string(300'000, 'x') + "\n\n" + MarkdownSamples::repeated("[a] ", 20'000);
    auto const document = documentOf(text);
    ASSERT_EQ(document.elements().size(), 2U);
    auto const code = document.element(1);
    EXPECT_EQ(code.kind(), Markup::RawMarkupKind::codeBlock);
    EXPECT_TRUE(code.string().toUtf8() == QByteArray::fromStdString(text));
    EXPECT_TRUE(code.secondString().isEmpty());
    EXPECT_EQ(dumpOf(documentOf("~a~")), dumpOf(ParserTree("~a~"))) << "the next parse is as ever";
}

TEST(Document, Parses_on_eight_threads_give_the_trees_of_one)
{
    std::vector<std::string> texts;
    for (std::uint32_t seed = 0; seed < 800; ++seed)
        texts.push_back(MarkdownSamples::random(10'000 + seed) + "~~a~~ *b*\n");
    std::vector<std::string> expected;
    for (auto const& text : texts)
        expected.push_back(dumpOf(documentOf(text)));
    std::array<std::size_t, 8> wrong {};
    {
        std::vector<std::jthread> threads;
        for (auto& count : wrong) {
            threads.emplace_back([&] {
                for (std::size_t index = 0; index < texts.size(); ++index)
                    count += dumpOf(documentOf(texts[index])) != expected[index] ? 1U : 0U;
            });
        }
    }
    EXPECT_EQ(wrong, decltype(wrong) {});
}

}
}
