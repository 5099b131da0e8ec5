#include "Markdown/Document.h"
#include "support/Cases.h"
#include "support/MarkdownSamples.h"
#include "support/ParserXml.h"

#include <array>
#include <thread>

namespace Quillory {
namespace {

using Kind = Markup::RawMarkupKind;

// The name and attributes of an element, as the parsing library spells them.
QString tagOf(Markup::Element element)
{
    static constexpr std::array names { "document", "block_quote", "", "", "item", "code_block", "html_block",
        "custom_block", "paragraph", "heading", "thematic_break", "text", "softbreak", "linebreak", "code",
        "html_inline", "custom_inline", "emph", "strong", "strikethrough", "link", "image", "attribute", "table",
        "table_header", "", "table_row", "table_cell" };
    auto const& raw = element.raw();
    auto const name = QString::fromLatin1(names.at(static_cast<std::size_t>(raw.kind)));
    auto const second = element.secondString().toString().toHtmlEscaped();
    switch (raw.kind) {
    case Kind::unorderedList:
        return u"list type=\"bullet\""_s;
    case Kind::orderedList:
        return u"list type=\"ordered\" start=\"%1\""_s.arg(raw.start);
    case Kind::listItem:
        return raw.number == Markup::noBox       ? name
            : raw.number == Markup::uncheckedBox ? u"tasklist completed=\"false\""_s
                                                 : u"tasklist completed=\"true\""_s;
    case Kind::heading:
        return name + u" level=\"%1\""_s.arg(raw.number);
    case Kind::link:
    case Kind::image:
        return u"%1 destination=\"%2\" title=\"%3\""_s.arg(name, element.string().toString().toHtmlEscaped(), second);
    default:
        return second.isEmpty() ? name : name + u" info=\"%1\""_s.arg(second);
    }
}

QString xmlOf(Markup::Document const& document)
{
    QString xml;
    std::vector<std::pair<std::uint32_t, QString>> open;
    auto const closeUpTo = [&](std::size_t index) {
        for (; !open.empty() && open.back().first <= index; open.pop_back())
            xml += u"</%1>\n"_s.arg(open.back().second);
    };
    for (std::uint32_t index = 0; index < document.elements().size(); ++index) {
        closeUpTo(index);
        auto const element = document.element(index);
        auto const& raw = element.raw();
        if (raw.kind == Kind::tableBody)
            continue; // which the library has none of
        auto const tag = tagOf(element);
        auto const name = tag.section(u' ', 0, 0);
        if (raw.end > index + 1) {
            open.emplace_back(raw.end, name);
            xml += u"<%1>\n"_s.arg(tag);
        } else if (QStringList { u"text"_s, u"code"_s, u"code_block"_s, u"html_inline"_s, u"html_block"_s }.contains(
                       name)) {
            xml += u"<%1>%2</%3>\n"_s.arg(tag, element.string().toString().toHtmlEscaped(), name);
        } else {
            xml += u"<%1 />\n"_s.arg(tag);
        }
    }
    closeUpTo(document.elements().size());
    return xml;
}

Markup::Document documentOf(QByteArray const& text)
{
    return Markup::Document::parsingUtf8(text);
}

TEST(Document, Its_elements_are_those_of_the_parsers_tree)
{
    auto texts = MarkdownSamples::snippets();
    for (std::uint32_t seed = 20'000; seed < 24'000; ++seed)
        texts << MarkdownSamples::random(seed) << MarkdownSamples::randomTables(seed);
    for (auto const& text : texts)
        ASSERT_EQ(xmlOf(documentOf(text)), parserXml(text)) << text.toStdString();
    EXPECT_EQ(documentOf("|a|b|c|d|\n|:-|:-:|-:|-|").element(1).string(), (QStringView { u"lcr", 4 }));
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
    EXPECT_TRUE(
        xmlOf(document) == u"<document>\n<code_block>%1</code_block>\n</document>\n"_s.arg(QString::fromUtf8(text)));
    EXPECT_EQ(documentOf("~a~").elements().size(), 4U) << "the next parse is as ever";
}

TEST(Document, Parses_on_eight_threads_give_the_trees_of_one)
{
    QByteArrayList texts;
    QStringList expected;
    for (std::uint32_t seed = 0; seed < 800; ++seed) {
        texts << MarkdownSamples::random(10'000 + seed) + "~~a~~ *b*\n";
        expected << xmlOf(documentOf(texts.last()));
    }
    std::array<std::size_t, 8> wrong {};
    {
        std::vector<std::jthread> threads;
        for (auto& count : wrong) {
            threads.emplace_back([&] {
                for (qsizetype index = 0; index < texts.size(); ++index)
                    count += xmlOf(documentOf(texts.at(index))) != expected.at(index) ? 1U : 0U;
            });
        }
    }
    EXPECT_EQ(wrong, decltype(wrong) {});
}

}
}
