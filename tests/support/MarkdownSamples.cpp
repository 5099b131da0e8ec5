#include "support/MarkdownSamples.h"

#include <random>

using namespace std::literals;

namespace Quillory {

namespace {

// The engine's numbers are the same everywhere; the library's distributions are not.
class Dice {
public:
    explicit Dice(std::uint32_t seed)
        : m_engine(seed)
    {
    }

    std::size_t below(std::size_t end) { return m_engine() % end; }
    bool oneIn(std::size_t count) { return below(count) == 0; }

    template<std::size_t count>
    std::string_view anyOf(std::string_view const (&pieces)[count])
    {
        return pieces[below(count)];
    }

private:
    std::mt19937 m_engine;
};

constexpr std::string_view pieces[] { "a", "b", "word", " ", "  ", "\t", "é", "漢字", "🙂", "e\u0301", "\0"sv, "\uFEFF",
    "\u00A0", "|", "|", "||", "\\|", "---", "--", "-", ":-:", "|-|-|", "a|b", "***", "**", "*", "_", "__", "~", "~~",
    "~~~", "`", "``", "```", "```c++", "`a`", "#", "## ", "#######", "===", "- ", "* ", "+ ", "1. ", "2) ", "0. ",
    "999999999. ", "[ ] ", "[x] ", "[X]", "[", "]", "![", "](", "(/u)", "(<u v> 'title')", "[r]", "[R][]",
    "[r]: /url \"t\"", "[q]: <>", "[^1]", "<b>", "</b>", "<!-- ", "-->", "<div>", "<?php", "<![CDATA[", "<script>",
    "<http://a.b>", "<x@y.z>", "http://a.b", "&amp;", "&copy;", "&#0;", "&#xD800;", "&#x1F600;", "&", "\\", "\\*",
    "\\\\", "\"", "'", "...", "!", "(", ")", "    ", "     ", "\v", "\f", "> ", ">" };
constexpr std::string_view lineEnds[] { "\n", "\n", "\n", "\n\n", "\r\n", "\r", "  \n", "\\\n", "\n\n\n" };
constexpr std::string_view prefixes[] { "", "", "", "", "> ", ">", "- ", "  ", "   ", "    ", "1. ", "> - ", "- > ",
    "> > ", "      ", "\t", "- [x] ", "# ", "     >" };
constexpr std::string_view cells[] { "a", "b c", "", " ", "`|`", "\\|", "\\\\|", "*e*", "![i](u)", "\v", "\f", "é", ">",
    "-", "\\", "[r]", "\u00A0", "a\\", "\0"sv };

}

std::vector<std::string> const& MarkdownSamples::snippets()
{
    static std::vector<std::string> const all { "", "\n\n", "plain", "a\nb", "a  \nb", "a\\\nb", "\uFEFF# A", "a\0b\0"s,
        "# A\n# B", "## A `b` *c*", "A\n=\nB\n-", "####### x", "one\n\n***\n", "*a* **b** ***c*** ~d~ ~~e~~ ~~~f~~~",
        "`a` ``b`c`` ` d `", "`...` ... -- --- --flag \"a\" 'b' it's", "    code\n\n    more", "```c++ x\na\n```",
        "~~~\na", "```\n```", "``` \nlast", "> a\nb\n> > c", "- a\n- b\n\n  c", "* a\n  1. b\n     - c", "7. a\n8. b",
        "0) a", "-\n- a", "- [ ] a\n- [x] b\n- [X] c\n- d\n- [x]", "1. [x] a", "[a](b)", "[a](b \"t\")", "[a]()",
        "[a](<>)", "[a](<> 't')", "![a](b)", "![a *b* `c` ![d](e)\nf](g 'h')", "![]()", "[![a](b)](c)",
        "[r][]\n\n[R]: /u (t)", "<http://a.b> <m@n.o>", "http://a.b", "[a](/%20é&auml;)", "a <b c='d'> </e> <!-- f -->",
        "<!-- a -->\n", "<div>\n*a*\n\n</div>", "&amp; &copy; &#35; &#0; &bogus; &ngE;", "\\* \\a \\\\",
        "|a|b|c|d|\n|-|:-|:-:|-:|", "|a|\n|-|\n|b|\n|c|\nd", "a|b\n-|-\n1\n1|2|3\n\\||`|`",
        "> | a |\n> |---|\n> | ![x](y) |", "- | a | b |\n  |---|---|\n  | 1 | 2 |\n- x", "text\n|a|b|\n|-|-|\n",
        "|a|b|\r\n|-|-|\r\n|1|2|\r\n", "|a|b|\n|-|\n", "|a|\n|-|\n\n|b|\n|-|\n", "[^1]\n\n[^1]: f",
        "# ![a](b) <i>x\\\n</i>", "![a\\\nb](c)", "A `x`\nB  \nC\n===", "a ** b", "漢字 *é* 🙂" };
    return all;
}

std::string MarkdownSamples::random(std::uint32_t seed)
{
    Dice dice(seed);
    std::string text;
    for (auto lines = 1 + dice.below(14); lines > 0; --lines) {
        text += dice.anyOf(prefixes);
        for (auto count = dice.below(9); count > 0; --count)
            text += dice.anyOf(pieces);
        text += dice.anyOf(lineEnds);
    }
    return text;
}

std::string MarkdownSamples::randomTables(std::uint32_t seed)
{
    Dice dice(seed);
    std::string text;
    for (auto tables = 1 + dice.below(3); tables > 0; --tables) {
        std::string_view const end = dice.oneIn(4) ? "\r\n" : dice.oneIn(8) ? "\r" : "\n";
        auto const columns = 1 + dice.below(6);
        auto const inner = dice.oneIn(3) ? std::string(dice.anyOf(prefixes)) : std::string();
        auto const row = [&](std::size_t width, auto cell) {
            std::string line(dice.oneIn(2) ? "|" : "");
            for (std::size_t column = 0; column < width; ++column)
                line += (column ? "|" : "") + std::string(cell());
            return line + (dice.oneIn(2) ? "|" : "") + std::string(dice.oneIn(6) ? " \v" : "");
        };
        auto const content = [&] { return dice.anyOf(cells); };
        // Below a list marker, what follows is indented as far.
        auto const below = inner.starts_with('-') || inner.starts_with('1') ? std::string(inner.size(), ' ') : inner;
        if (dice.oneIn(3))
            text += "words" + std::string(end);
        text += inner + row(columns, content) + std::string(end);
        text += below + row(columns, [&] { return dice.oneIn(3) ? ":-"sv : "---"sv; }) + std::string(end);
        for (auto rows = dice.below(7); rows > 0; --rows)
            text += (dice.oneIn(9) ? std::string(dice.anyOf(prefixes)) : below) + row(dice.below(columns + 2), content)
                + std::string(end);
        if (!dice.oneIn(3))
            text += end;
    }
    return text;
}

std::string MarkdownSamples::repeated(std::string_view piece, std::size_t count)
{
    std::string text;
    text.reserve(piece.size() * count);
    while (count-- > 0)
        text += piece;
    return text;
}

}
