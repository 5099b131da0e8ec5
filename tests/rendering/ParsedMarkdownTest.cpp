#include "rendering/ParsedMarkdown.h"
#include "support/MarkdownSamples.h"
#include "support/ParserTree.h"

#include <gtest/gtest.h>

#include <deque>
#include <utility>
#include <vector>

using namespace Qt::StringLiterals;

namespace Quillory {
namespace {

ParsedMarkdown parsed(std::string_view text)
{
    return ParsedMarkdown::parsingUtf8(QByteArrayView(text.data(), static_cast<qsizetype>(text.size())));
}

// A line for each node, row and cell: its depth, kind and payload. Walks through the payloads alone.
class Dump {
public:
    explicit Dump(ParsedMarkdown const& tree)
    {
        push(tree.nodes());
        while (!m_levels.empty()) {
            auto const next = m_levels.back().front();
            m_levels.back().pop_front();
            m_depth = m_levels.size() - 1;
            std::visit(*this, next);
            while (!m_levels.empty() && m_levels.back().empty())
                m_levels.pop_back();
        }
    }

    std::string const& text() const { return m_text; }

    void operator()(ParsedMarkdown::Node node) { std::visit(*this, node.value()); }
    void operator()(ParsedMarkdown::Row row) { line("row", row.cells); }
    void operator()(ParsedMarkdown::Cell cell) { line("cell", cell.nodes); }
    void operator()(ParsedMarkdown::Text text) { line("text" + quoted(text.string)); }
    void operator()(ParsedMarkdown::InlineCode code) { line("inlineCode" + quoted(code.string)); }
    void operator()(ParsedMarkdown::CodeBlock code) { line("codeBlock" + quoted(code.string)); }
    void operator()(ParsedMarkdown::Heading heading)
    {
        line("heading " + std::to_string(heading.level) + quoted(heading.text), heading.children);
    }
    void operator()(ParsedMarkdown::Paragraph paragraph) { line("paragraph", paragraph.children); }
    void operator()(ParsedMarkdown::Strong strong) { line("strong", strong.children); }
    void operator()(ParsedMarkdown::Emphasis emphasis) { line("emphasis", emphasis.children); }
    void operator()(ParsedMarkdown::Strikethrough strikethrough) { line("strikethrough", strikethrough.children); }
    void operator()(ParsedMarkdown::Link link) { line("link" + quoted(link.destination), link.children); }
    void operator()(ParsedMarkdown::Image image) { line("image" + quoted(image.source) + quoted(image.description)); }
    void operator()(ParsedMarkdown::ListItem item)
    {
        line(!item.checked ? "listItem" : *item.checked ? "listItem true" : "listItem false", item.children);
    }
    void operator()(ParsedMarkdown::BlockQuote quote) { line("blockQuote", quote.children); }
    void operator()(ParsedMarkdown::Table table) { line("table", table.rows); }
    void operator()(ParsedMarkdown::Html html)
    {
        line((html.block ? "html block" : "html inline") + quoted(html.string));
    }
    void operator()(ParsedMarkdown::Container container) { line("container", container.children); }
    void operator()(ParsedMarkdown::LineBreak) { line("lineBreak"); }
    void operator()(ParsedMarkdown::ThematicBreak) { line("thematicBreak"); }

private:
    using Item = std::variant<ParsedMarkdown::Node, ParsedMarkdown::Row, ParsedMarkdown::Cell>;

    void line(std::string const& content) { m_text += std::to_string(m_depth) + ' ' + content + '\n'; }

    template<typename Children>
    void line(std::string const& content, Children children)
    {
        line(content);
        push(children);
    }

    template<typename Children>
    void push(Children children)
    {
        std::deque<Item> level;
        for (auto child : children)
            level.emplace_back(child);
        if (!level.empty())
            m_levels.push_back(std::move(level));
    }

    std::vector<std::deque<Item>> m_levels;
    std::size_t m_depth = 0;
    std::string m_text;
};

std::string dumpOf(ParsedMarkdown const& tree)
{
    return Dump(tree).text();
}

std::string plainTextOf(cmark_node* root)
{
    std::string plain;
    auto const enter = [&](cmark_node* node) {
        auto const type = ParserTree::typeOf(node);
        auto const* const literal = cmark_node_get_literal(node);
        if (type == "softbreak")
            plain += ' ';
        else if (type == "linebreak")
            plain += '\n';
        else if (type == "code")
            plain += '`' + std::string(literal) + '`';
        else if (literal)
            plain += literal;
        return true;
    };
    ParserTree::walk(root, enter, [](cmark_node*) { });
    return plain;
}

std::string lineOf(cmark_node* node, std::string_view type)
{
    auto const literal = [&] { return quoted(std::string_view(cmark_node_get_literal(node))); };
    if (type == "text")
        return "text" + literal();
    if (type == "code")
        return "inlineCode" + literal();
    if (type == "code_block")
        return "codeBlock" + literal();
    if (type == "heading")
        return "heading " + std::to_string(cmark_node_get_heading_level(node))
            + quoted(std::string_view(plainTextOf(node)));
    if (type == "link")
        return "link" + quotedUnlessEmpty(cmark_node_get_url(node));
    if (type == "image")
        return "image" + quotedUnlessEmpty(cmark_node_get_url(node)) + quoted(std::string_view(plainTextOf(node)));
    if (type == "tasklist")
        return cmark_gfm_extensions_get_tasklist_item_checked(node) ? "listItem true" : "listItem false";
    if (type == "html_inline")
        return "html inline" + literal();
    if (type == "html_block")
        return "html block" + literal();
    static std::pair<std::string_view, char const*> const names[] { { "paragraph", "paragraph" },
        { "strong", "strong" }, { "emph", "emphasis" }, { "strikethrough", "strikethrough" }, { "item", "listItem" },
        { "block_quote", "blockQuote" }, { "table", "table" }, { "table_header", "row" }, { "table_row", "row" },
        { "table_cell", "cell" }, { "softbreak", "lineBreak" }, { "linebreak", "lineBreak" },
        { "thematic_break", "thematicBreak" }, { "list", "container" } };
    for (auto const& [parsers, ours] : names) {
        if (type == parsers)
            return ours;
    }
    return "unexpected " + std::string(type);
}

// What the model must hold of a text, made from the parser's tree without any code of the program.
std::string expectedDump(std::string_view text)
{
    ParserTree const tree(text);
    std::string dump;
    std::size_t depth = 0;
    auto const enter = [&](cmark_node* node) {
        auto const type = ParserTree::typeOf(node);
        if (type != "document")
            dump += std::to_string(depth - 1) + ' ' + lineOf(node, type) + '\n';
        if (type == "image")
            return false;
        ++depth;
        return true;
    };
    ParserTree::walk(tree.root(), enter, [&](cmark_node*) { --depth; });
    return dump;
}

TEST(ParsedMarkdown, Its_tree_is_what_the_parsers_tree_says)
{
    auto texts = MarkdownSamples::snippets();
    for (std::uint32_t seed = 20'000; seed < 24'000; ++seed) {
        texts.push_back(MarkdownSamples::random(seed));
        texts.push_back(MarkdownSamples::randomTables(seed));
    }
    for (auto const& text : texts) {
        auto const tree = parsed(text);
        auto const expected = expectedDump(text);
        ASSERT_EQ(dumpOf(tree), expected) << text;
        ASSERT_EQ(ParsedMarkdown::parsing(QString::fromStdString(text)), tree) << text;
    }
    EXPECT_EQ(parsed("- a\n- **b**").nodeCount(), 8);
    EXPECT_EQ(parsed("|a|\n|-|\n|b|").nodeCount(), 3) << "rows and cells are no nodes";
}

TEST(ParsedMarkdown, Trees_are_equal_when_their_nodes_and_payloads_are)
{
    std::pair<char const*, char const*> const equal[] { { "", "\n\n" }, { "1. a\n2. b", "* a\n* b" },
        { "a\nb", "a  \nb" }, { "a\n=", "# a" }, { "```c\na\n```", "~~~\na\n~~~" }, { "[a](b 'c')", "[a](b)" },
        { "|a|\n|:-|", "|a|\n|-:|" }, { "*a*", "_a_" } };
    for (auto const& [one, other] : equal)
        EXPECT_EQ(parsed(one), parsed(other)) << one;

    // No two of these are equal.
    char const* const different[] { "", "a", "b", "ab", "a*b*", "*a*b", "**a**", "~a~", "`a`", "    a", "# a", "## a",
        "> a", "> > a", "> a\n\na", "> a\n>\n> a", "- a", "- [ ] a", "- [x] a", "- a\n- a", "- a\n\n<!-- -->\n- a",
        "[a]()", "[a](b)", "[a](c)", "[](b)", "![a]()", "![a](b)", "![](b)", "![](ab)", "![b](a)", "<b>", "<!-- a -->",
        "a\nb", "***", "|a|\n|-|", "|a|b|\n|-|-|", "|a|\n|-|\n|b|", "|ab||\n|-|-|", "|||\n|-|-|" };
    for (auto const* const one : different) {
        for (auto const* const other : different)
            EXPECT_EQ(parsed(one) == parsed(other), one == other) << one << " and " << other;
    }
    EXPECT_EQ(ParsedMarkdown(), parsed(""));
}

TEST(ParsedMarkdown, Title_is_the_text_of_a_heading_of_level_one_in_first_place)
{
    std::pair<char const*, std::optional<QString>> const cases[] { { "# A\n# B", u"A"_s },
        { "A `b` *c*\nD\n===", u"A `b` c D"_s }, { "\n\n#\n", u""_s }, { "\uFEFF# A", u"A"_s }, { "", std::nullopt },
        { "## A\n# B", std::nullopt }, { "a\n\n# B", std::nullopt }, { "***\n# B", std::nullopt },
        { "> # A", std::nullopt }, { "<!-- -->\n# A", std::nullopt } };
    for (auto const& [text, title] : cases)
        EXPECT_EQ(parsed(text).firstHeadingTitle(), title) << text;
}

TEST(ParsedMarkdown, Image_sources_are_found_wherever_they_stand_and_once)
{
    std::pair<char const*, QSet<QString>> const cases[] { { "![](a) ![b](a)\n\n> - **![](c)**", { u"a"_s, u"c"_s } },
        { "|![](a)|[![](b)](c)|\n|-|-|\n||~~![](d)~~|", { u"a"_s, u"b"_s, u"d"_s } }, { "# *![](a)*", { u"a"_s } },
        { "`![](a)` [a](b) ![]() <img src='c'>\n\n    ![](d)", {} }, { "![![](a)](b)", { u"b"_s } }, { "", {} } };
    for (auto const& [text, sources] : cases)
        EXPECT_EQ(parsed(text).imageSources(), sources) << text;
}

TEST(ParsedMarkdown, Trees_of_any_depth_are_walked_compared_and_freed)
{
    for (auto const* const piece : { "> ", "- ", "1. ", "*a ", "[![" }) {
        auto const text = MarkdownSamples::repeated(piece, 50'000) + "a"
            + MarkdownSamples::repeated("*", piece[0] == '*' ? 50'000U : 0U);
        auto const tree = parsed(text);
        auto const copy = tree;
        EXPECT_EQ(copy, parsed(text)) << piece;
        EXPECT_TRUE(dumpOf(tree) == expectedDump(text)) << piece;
    }
}

}
}
