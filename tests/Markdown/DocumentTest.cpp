#include "Markdown/DocumentDump.h"
#include "support/MarkdownSamples.h"

#include <gtest/gtest.h>

#include <array>
#include <iostream>
#include <memory>
#include <thread>
#include <utility>
#include <vector>

using namespace std::literals;
using namespace Qt::StringLiterals;

namespace Quillory {
namespace {

Markup::Document documentOf(std::string_view text)
{
    return Markup::Document::parsingUtf8(QByteArrayView(text.data(), static_cast<qsizetype>(text.size())));
}

// The dump without the lines of the document and of the paragraph that a text of inlines stands in.
std::string elementsOf(std::string_view text)
{
    auto dump = dumpOf(documentOf(text));
    for (auto const line : { "0 document\n"sv, "1 paragraph\n"sv }) {
        if (dump.starts_with(line))
            dump.erase(0, line.size());
    }
    return dump;
}

TEST(Document, Each_kind_of_element_comes_with_its_payload)
{
    struct Case {
        std::string_view text;
        std::string_view elements;
    };
    Case const cases[] {
        { "", "" },
        { "> a", "1 block_quote\n2 paragraph\n3 text 1:a\n" },
        { "- a", "1 list bullet\n2 item\n3 paragraph\n4 text 1:a\n" },
        { "007) a", "1 list ordered 7\n2 item\n3 paragraph\n4 text 1:a\n" },
        { "0. a", "1 list ordered 0\n2 item\n3 paragraph\n4 text 1:a\n" },
        { "999999999. [x] a", "1 list ordered 999999999\n2 tasklist x\n3 paragraph\n4 text 1:a\n" },
        { "- [ ] a", "1 list bullet\n2 tasklist\n3 paragraph\n4 text 1:a\n" },
        { "```c++ x\na\n```", "1 code_block 2:a\n 5:c++ x\n" },
        { "    a", "1 code_block 2:a\n -\n" },
        { "<!-- a -->\n", "1 html_block 11:<!-- a -->\n\n" },
        { "a\n---", "1 heading 2\n2 text 1:a\n" },
        { "###### a", "1 heading 6\n2 text 1:a\n" },
        { "***", "1 thematic_break\n" },
        { "a\nb", "2 text 1:a\n2 softbreak\n2 text 1:b\n" },
        { "a  \nb", "2 text 1:a\n2 linebreak\n2 text 1:b\n" },
        { "`` ` ``", "2 code 1:`\n" },
        { "a<b x='y'>", "2 text 1:a\n2 html_inline 9:<b x='y'>\n" },
        { "*a*", "2 emph\n3 text 1:a\n" },
        { "__a__", "2 strong\n3 text 1:a\n" },
        { "~~a~~", "2 strikethrough\n3 text 1:a\n" },
        { "[a](b 'c')", "2 link 1:b 1:c\n3 text 1:a\n" },
        { "[]()", "2 link - -\n" },
        { "[a](<> 'c')", "2 link - 1:c\n3 text 1:a\n" },
        { "![a](b)", "2 image 1:b -\n3 text 1:a\n" },
        { "|a|b|c|d|\n|:-|:-:|-:|-|",
            "1 table lcr.\n2 table_header\n3 table_cell 1 1\n4 text 1:a\n3 table_cell 1 1\n4 text 1:b\n"
            "3 table_cell 1 1\n4 text 1:c\n3 table_cell 1 1\n4 text 1:d\n2 body\n" },
        { "|a|\n|-|\n|b|",
            "1 table .\n2 table_header\n3 table_cell 1 1\n4 text 1:a\n2 body\n3 table_row\n4 table_cell 1 1\n5 text "
            "1:b\n" },
        { "... `...` -- ---", "2 text 4:… \n2 code 3:...\n2 text 8: – —\n" },
        { "\"a\" 'b'", "2 text 15:“a” ‘b’\n" },
        { "a\0b"sv, "2 text 5:a\uFFFDb\n" },
        { "http://a.b [^1]", "2 text 15:http://a.b [^1]\n" },
    };
    for (auto const& [text, elements] : cases)
        EXPECT_EQ(elementsOf(text), elements) << text;
}

TEST(Document, Elements_count_and_list_their_children)
{
    auto const document = Markup::Document::parsing(u"# a *b*\n\nc"_s);
    EXPECT_EQ(document.childCount(), 2);
    EXPECT_EQ((*document.children().begin()).childCount(), 2);
    EXPECT_TRUE(Markup::Document::parsing(QString()).children().isEmpty());
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
    auto const corpus = MarkdownSamples::corpus();
    texts.insert(texts.end(), corpus.begin(), corpus.end());
    RecordProperty("documents", static_cast<int>(texts.size()));
    std::cout << texts.size() << " documents compared, " << corpus.size() << " of them from a folder\n";
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
        { "nested quotes", many("> ", 50'000) + "a" },
        { "nested lists", many("- ", 50'000) + "a" },
        { "nested quotes and lists", many("> 1. ", 25'000) + "a" },
        { "nested emphasis", many("*a ", 50'000) + "b" + many("*", 50'000) },
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
    EXPECT_EQ(elementsOf("~a~"), "2 strikethrough\n3 text 1:a\n") << "the next parse is as ever";
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
