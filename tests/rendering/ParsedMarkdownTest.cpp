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

// A line for each node, row and cell: its depth, what the parser calls it, and all that it holds. Goes through the
// payloads alone.
class Dump {
public:
    static std::string of(ParsedMarkdown const& tree)
    {
        Dump dump;
        dump.push(tree.nodes());
        while (!dump.m_levels.empty()) {
            auto const next = dump.m_levels.back().front();
            dump.m_levels.back().pop_front();
            dump.m_depth = dump.m_levels.size() - 1;
            std::visit(dump, next);
            while (!dump.m_levels.empty() && dump.m_levels.back().empty())
                dump.m_levels.pop_back();
        }
        return dump.m_text;
    }

    void operator()(ParsedMarkdown::Row row) { line("row", row.cells); }
    void operator()(ParsedMarkdown::Cell cell) { line("cell", cell.nodes); }
    void operator()(ParsedMarkdown::Node node)
    {
        static char const* const names[] { "text", "code", "code_block", "heading", "paragraph", "strong", "emph",
            "strikethrough", "link", "image", "item", "block_quote", "table", "html", "list", "break",
            "thematic_break" };
        auto const value = node.value();
        std::visit([&](auto const& payload) { add(names[value.index()], payload); }, value);
    }

private:
    using Item = std::variant<ParsedMarkdown::Node, ParsedMarkdown::Row, ParsedMarkdown::Cell>;

    template<typename Payload>
    void add(std::string content, Payload const& payload)
    {
        if constexpr (requires { payload.level; })
            content += ' ' + std::to_string(payload.level) + quoted(payload.text);
        if constexpr (requires { payload.block; })
            content += payload.block ? " block" : " inline";
        if constexpr (requires { payload.checked; })
            content += !payload.checked ? "" : *payload.checked ? " checked" : " open";
        if constexpr (requires { payload.string; })
            content += quoted(payload.string);
        if constexpr (requires { payload.destination; })
            content += quoted(payload.destination);
        if constexpr (requires { payload.source; })
            content += quoted(payload.source) + quoted(payload.description);
        if constexpr (requires { payload.children; })
            line(content, payload.children);
        else if constexpr (requires { payload.rows; })
            line(content, payload.rows);
        else
            line(content, ParsedMarkdown().nodes());
    }

    template<typename Children>
    void line(std::string const& content, Children children)
    {
        m_text += std::to_string(m_depth) + ' ' + content + '\n';
        push(children);
    }

    template<typename Children>
    void push(Children children)
    {
        std::deque<Item> level(children.begin(), children.end());
        if (!level.empty())
            m_levels.push_back(std::move(level));
    }

    std::vector<std::deque<Item>> m_levels;
    std::size_t m_depth = 0;
    std::string m_text;
};

std::string plainTextOf(cmark_node* root)
{
    std::string plain;
    auto const enter = [&](cmark_node* node) {
        auto const type = ParserTree::typeOf(node);
        auto const* const literal = cmark_node_get_literal(node);
        if (type == "softbreak" || type == "linebreak")
            plain += type == "linebreak" ? '\n' : ' ';
        else if (literal)
            plain += type == "code" ? '`' + std::string(literal) + '`' : literal;
        return true;
    };
    ParserTree::walk(root, enter, [](cmark_node*) { });
    return plain;
}

std::string lineOf(cmark_node* node, std::string_view type)
{
    auto const name = std::string(type);
    if (type == "heading")
        return name + ' ' + std::to_string(cmark_node_get_heading_level(node))
            + quoted(std::string_view(plainTextOf(node)));
    if (type == "link")
        return name + quotedUnlessEmpty(cmark_node_get_url(node));
    if (type == "image")
        return name + quotedUnlessEmpty(cmark_node_get_url(node)) + quoted(std::string_view(plainTextOf(node)));
    if (type == "tasklist")
        return cmark_gfm_extensions_get_tasklist_item_checked(node) ? "item checked" : "item open";
    if (type == "softbreak" || type == "linebreak")
        return "break";
    if (type.starts_with("table_"))
        return type == "table_cell" ? "cell" : "row";
    auto const* const literal = cmark_node_get_literal(node);
    auto const kind = type.starts_with("html_") ? "html " + name.substr(5) : name;
    return literal ? kind + quoted(std::string_view(literal)) : kind;
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
        ASSERT_EQ(Dump::of(tree), expected) << text;
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
        EXPECT_TRUE(Dump::of(tree) == expectedDump(text)) << piece;
    }
    for (auto const* const piece : { "a", "[", "> ", "**a ~b ", "a\n\n", "a|b\n-|-\n" }) {
        auto const text = MarkdownSamples::repeated(piece, 60'000);
        EXPECT_TRUE(Dump::of(parsed(text)) == expectedDump(text)) << piece;
    }
}

}
}
