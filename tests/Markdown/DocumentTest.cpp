#include "Markdown/Document.h"
#include "support/MarkdownSamples.h"
#include "support/ParserTree.h"
#include "support/Test.h"

#include <QFile>

#include <array>
#include <thread>

namespace Quillory {
namespace {

// A line for each element; the strings with their lengths, so that no content can be taken for structure.
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
        auto const string = element.string().toString().replace(QChar(0), u'.'); // a column without alignment
        dump += std::to_string(ends.size()) + ' ' + kinds.at(static_cast<std::size_t>(raw.kind)) + ' '
            + std::to_string(raw.number + raw.start) + quoted(QStringView(string)) + quoted(element.secondString())
            + '\n';
        ends.push_back(raw.end);
    }
    return dump;
}

Markup::Document documentOf(std::string_view text)
{
    return Markup::Document::parsingUtf8(QByteArrayView(text.data(), static_cast<qsizetype>(text.size())));
}

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

TEST(Document, A_text_that_expands_itself_without_bound_stands_there_as_code)
{
    auto const text = "[a]: /" + std::string(300'000, 'x') + "\n\n" + MarkdownSamples::repeated("[a] ", 20'000);
    auto const document = documentOf(text);
    ASSERT_EQ(document.elements().size(), 2U);
    auto const code = document.element(1);
    EXPECT_EQ(code.kind(), Markup::RawMarkupKind::codeBlock);
    EXPECT_TRUE(code.string().toUtf8() == QByteArray::fromStdString(text));
    EXPECT_TRUE(code.secondString().isEmpty());
    EXPECT_EQ(documentOf("~a~").elements().size(), 4U) << "the next parse is as ever";
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
