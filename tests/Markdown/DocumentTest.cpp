#include "Markdown/Document.h"
#include "support/MarkdownSamples.h"
#include "support/ParserTree.h"

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <thread>
#include <vector>

using namespace std::literals;
using namespace Qt::StringLiterals;

namespace Quillory {
namespace {

struct Describe {
    std::string operator()(Markup::DocumentRoot) const { return "document"; }
    std::string operator()(Markup::BlockQuote) const { return "block_quote"; }
    std::string operator()(Markup::OrderedList list) const { return "list ordered " + std::to_string(list.startIndex); }
    std::string operator()(Markup::UnorderedList) const { return "list bullet"; }
    std::string operator()(Markup::ListItem item) const
    {
        return !item.checkbox ? "item" : *item.checkbox == Markup::Checkbox::checked ? "tasklist x" : "tasklist";
    }
    std::string operator()(Markup::CodeBlock block) const
    {
        return "code_block" + quoted(block.code) + quoted(block.language);
    }
    std::string operator()(Markup::HTMLBlock block) const { return "html_block" + quoted(block.rawHTML); }
    std::string operator()(Markup::CustomBlock) const { return "custom_block"; }
    std::string operator()(Markup::Paragraph) const { return "paragraph"; }
    std::string operator()(Markup::Heading heading) const { return "heading " + std::to_string(heading.level); }
    std::string operator()(Markup::ThematicBreak) const { return "thematic_break"; }
    std::string operator()(Markup::Text text) const { return "text" + quoted(text.string); }
    std::string operator()(Markup::SoftBreak) const { return "softbreak"; }
    std::string operator()(Markup::LineBreak) const { return "linebreak"; }
    std::string operator()(Markup::InlineCode code) const { return "code" + quoted(code.code); }
    std::string operator()(Markup::InlineHTML html) const { return "html_inline" + quoted(html.rawHTML); }
    std::string operator()(Markup::CustomInline custom) const { return "custom_inline" + quoted(custom.string); }
    std::string operator()(Markup::Emphasis) const { return "emph"; }
    std::string operator()(Markup::Strong) const { return "strong"; }
    std::string operator()(Markup::Strikethrough) const { return "strikethrough"; }
    std::string operator()(Markup::Link link) const { return "link" + quoted(link.destination) + quoted(link.title); }
    std::string operator()(Markup::Image image) const { return "image" + quoted(image.source) + quoted(image.title); }
    std::string operator()(Markup::InlineAttributes inlines) const { return "attribute" + quoted(inlines.attributes); }
    std::string operator()(Markup::Table const& table) const
    {
        std::string line = "table ";
        for (auto const& alignment : table.columnAlignments)
            line += alignment ? "lcr"[static_cast<int>(*alignment)] : '.';
        return line;
    }
    std::string operator()(Markup::Table::Head) const { return "table_header"; }
    std::string operator()(Markup::Table::Body) const { return "body"; }
    std::string operator()(Markup::Table::Row) const { return "table_row"; }
    std::string operator()(Markup::Table::Cell cell) const
    {
        return "table_cell " + std::to_string(cell.colspan) + ' ' + std::to_string(cell.rowspan);
    }
};

std::string payloadOf(cmark_node* node, std::string_view type)
{
    if (type == "list") {
        return cmark_node_get_list_type(node) == CMARK_BULLET_LIST
            ? " bullet"
            : " ordered " + std::to_string(cmark_node_get_list_start(node));
    }
    if (type == "tasklist")
        return cmark_gfm_extensions_get_tasklist_item_checked(node) ? " x" : "";
    if (type == "heading")
        return ' ' + std::to_string(cmark_node_get_heading_level(node));
    if (type == "code_block")
        return quoted(std::string_view(cmark_node_get_literal(node)))
            + quotedUnlessEmpty(cmark_node_get_fence_info(node));
    if (type == "link" || type == "image")
        return quotedUnlessEmpty(cmark_node_get_url(node)) + quotedUnlessEmpty(cmark_node_get_title(node));
    if (type == "table_cell")
        return " 1 1";
    if (type == "table") {
        std::string alignments = " ";
        for (int column = 0; column < cmark_gfm_extensions_get_table_columns(node); ++column) {
            char const alignment = static_cast<char>(cmark_gfm_extensions_get_table_alignments(node)[column]);
            alignments += alignment ? alignment : '.';
        }
        return alignments;
    }
    auto const* const literal = cmark_node_get_literal(node);
    return literal ? quoted(std::string_view(literal)) : "";
}

// One line for each element: its depth, its kind by the parser's name, its payload.
std::string dumpOf(Markup::Document const& document)
{
    std::string dump;
    auto const add = [&](Markup::Element element, std::size_t depth) {
        dump += std::to_string(depth) + ' ' + std::visit(Describe {}, element.data()) + '\n';
    };
    struct Level {
        Markup::ElementChildren::Iterator next, end;
    };
    add(document.root(), 0);
    std::vector<Level> levels { { document.children().begin(), document.children().end() } };
    while (!levels.empty()) {
        auto& [next, end] = levels.back();
        if (next == end) {
            levels.pop_back();
            continue;
        }
        auto const element = *next;
        ++next;
        add(element, levels.size());
        levels.push_back({ element.children().begin(), element.children().end() });
    }
    return dump;
}

// The same of the parser's tree, with the body that a table has in ours.
std::string dumpOf(ParserTree const& tree)
{
    std::string dump;
    std::size_t depth = 0;
    auto const enter = [&](cmark_node* node) {
        auto const type = ParserTree::typeOf(node);
        depth += type == "table_row" ? 1U : 0U;
        dump += std::to_string(depth++) + ' ' + std::string(type) + payloadOf(node, type) + '\n';
        return true;
    };
    auto const leave = [&](cmark_node* node) {
        auto const type = ParserTree::typeOf(node);
        depth -= type == "table_row" ? 2U : 1U;
        if (type == "table_header")
            dump += std::to_string(depth) + " body\n";
    };
    ParserTree::walk(tree.root(), enter, leave);
    return dump;
}

Markup::Document documentOf(std::string_view text)
{
    return Markup::Document::parsingUtf8(QByteArrayView(text.data(), static_cast<qsizetype>(text.size())));
}

// What both trees are dumped as, so that neither can fall silent.
TEST(Document, Each_kind_of_element_comes_with_its_payload)
{
    struct Case {
        std::string_view text;
        std::string_view elements;
    };
    Case const cases[] {
        { "999999999. [x] a\n1. [ ] b",
            "1 list ordered 999999999\n2 tasklist x\n3 paragraph\n4 text 1:a\n2 tasklist\n3 paragraph\n4 text 1:b\n" },
        { "- a\n  > b", "1 list bullet\n2 item\n3 paragraph\n4 text 1:a\n3 block_quote\n4 paragraph\n5 text 1:b\n" },
        { "```c++ x\na\n```\n\n    b", "1 code_block 2:a\n 5:c++ x\n1 code_block 2:b\n -\n" },
        { "<!-- a -->\n###### a\n***", "1 html_block 11:<!-- a -->\n\n1 heading 6\n2 text 1:a\n1 thematic_break\n" },
        { "a\nb  \n`` ` ``<b x='y'>",
            "1 paragraph\n2 text 1:a\n2 softbreak\n2 text 1:b\n2 linebreak\n2 code 1:`\n2 html_inline 9:<b x='y'>\n" },
        { "*a*__b__~~c~~", "1 paragraph\n2 emph\n3 text 1:a\n2 text 5:__b__\n2 strikethrough\n3 text 1:c\n" },
        { "[a](b 'c')![](<>)", "1 paragraph\n2 link 1:b 1:c\n3 text 1:a\n2 image - -\n" },
        { "|a|b|c|d|\n|:-|:-:|-:|-|",
            "1 table lcr.\n2 table_header\n3 table_cell 1 1\n4 text 1:a\n3 table_cell 1 1\n4 text 1:b\n"
            "3 table_cell 1 1\n4 text 1:c\n3 table_cell 1 1\n4 text 1:d\n2 body\n" },
        { "|a|\n|-|\n|b|",
            "1 table .\n2 table_header\n3 table_cell 1 1\n4 text 1:a\n2 body\n3 table_row\n4 table_cell 1 1\n5 text "
            "1:b\n" },
        { "\"a\0\" -- http://a.b [^1]"sv, "1 paragraph\n2 text 30:“a\uFFFD” – http://a.b [^1]\n" },
    };
    for (auto const& [text, elements] : cases)
        EXPECT_EQ(dumpOf(documentOf(text)), "0 document\n" + std::string(elements)) << text;
    EXPECT_EQ(documentOf("# a *b*\n\nc").childCount(), 2);
}

TEST(Document, Plain_text_drops_marks_and_keeps_backticks_and_breaks)
{
    struct Case {
        char const* text;
        QString plain;
    };
    Case const cases[] {
        { "# a`b`c", u"a`b`c"_s },
        { "a\nb", u"a b"_s },
        { "a\\\nb", u"a\nb"_s },
        { "*a* **b** ~~c~~ [d](e 'f') ![g *h*](i) <b>", u"a b c d g h <b>"_s },
        { "[![a `b`](c)](d)", u"a `b`"_s },
        { "#", u""_s },
    };
    for (auto const& [text, plain] : cases)
        EXPECT_EQ((*documentOf(text).children().begin()).plainText(), plain) << text;
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
    auto const many = [](std::string_view piece, std::size_t count) { return MarkdownSamples::repeated(piece, count); };
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
    ASSERT_EQ(document.childCount(), 1);
    auto const code = std::get<Markup::CodeBlock>((*document.children().begin()).data());
    EXPECT_TRUE(code.code.toUtf8() == QByteArray::fromStdString(text));
    EXPECT_FALSE(code.language);
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
