#include "Markdown/Document.h"
#include "support/Cases.h"
#include "support/MarkdownSamples.h"

#include <array>
#include <thread>

namespace Quillory {
namespace {

Markup::Document documentOf(QByteArray const& text)
{
    return Markup::Document::parsingUtf8(text);
}

// The tree as the program's own shows it is compared with the parser's by the tests of ParsedMarkdown.
TEST(Document, It_holds_what_the_programs_own_tree_leaves_out)
{
    auto const document = documentOf(
        "7. a\n\n- b\n\n```c++ x\n```\n[a](b 'c')![](d 'e')\n\n|a|b|c|d|\n|:-|:-:|-:|-|\n|1|2|3|4|\n");
    QStringList found;
    for (std::uint32_t index = 0; index < document.elements().size(); ++index) {
        auto const element = document.element(index);
        if (auto const start = element.raw().start)
            found << QString::number(start);
        if (element.kind() == Markup::RawMarkupKind::table)
            found << element.string().toString().replace(QChar(0), u'-');
        if (!element.secondString().isEmpty())
            found << element.secondString().toString();
    }
    auto const rowOfSingleCells = u" 65537"_s.repeated(4); // each spans one column and one row
    EXPECT_EQ(found.join(u' '), u"7 c++ x c e lcr-"_s + rowOfSingleCells + rowOfSingleCells);
}

TEST(Document, Plain_text_drops_marks_and_keeps_backticks_and_breaks)
{
    forEachCase(u"plain texts"_s,
        [](auto const& row) { EXPECT_EQ(documentOf(bytesIn(row[0])).element(1).plainText(), row[1].toString()); });
}

TEST(Document, A_text_that_expands_itself_without_bound_stands_there_as_code)
{
    auto const text = "[a]: /" + QByteArray(300'000, 'x') + "\n\n" + QByteArray("[a] ").repeated(20'000);
    auto const document = documentOf(text);
    ASSERT_EQ(document.elements().size(), 2U);
    EXPECT_EQ(document.element(1).kind(), Markup::RawMarkupKind::codeBlock);
    EXPECT_TRUE(document.element(1).string().toUtf8() == text);
    EXPECT_TRUE(document.element(1).secondString().isEmpty());
    EXPECT_EQ(documentOf("~a~").elements().size(), 4U) << "the next parse is as ever";
}

TEST(Document, Parses_on_eight_threads_give_the_trees_of_one)
{
    auto const looks = [](QByteArray const& text) {
        auto const document = documentOf(text);
        return document.element(0).plainText() + QString::number(document.elements().size());
    };
    QByteArrayList texts;
    QStringList expected;
    for (std::uint32_t seed = 0; seed < 800; ++seed) {
        texts << MarkdownSamples::random(10'000 + seed) + "~~a~~ *b*\n";
        expected << looks(texts.last());
    }
    std::array<std::size_t, 8> wrong {};
    {
        std::vector<std::jthread> threads;
        for (auto& count : wrong) {
            threads.emplace_back([&] {
                for (qsizetype index = 0; index < texts.size(); ++index)
                    count += looks(texts.at(index)) != expected.at(index) ? 1U : 0U;
            });
        }
    }
    EXPECT_EQ(wrong, decltype(wrong) {});
}

}
}
