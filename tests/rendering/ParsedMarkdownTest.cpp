#include "rendering/ParsedMarkdown.h"
#include "support/Cases.h"
#include "support/MarkdownSamples.h"
#include "support/ParserXml.h"

#include <array>

namespace Quillory {
namespace {

ParsedMarkdown parsed(QJsonValue const& text)
{
    return ParsedMarkdown::parsing(text.toString());
}

// Writes a tree as the parsing library does, from the payloads alone.
struct Writer {
    void operator()(ParsedMarkdown::Row row) { write(u"row"_s, {}, row.cells); }
    void operator()(ParsedMarkdown::Cell cell) { write(u"table_cell"_s, {}, cell.nodes); }
    void operator()(ParsedMarkdown::Node node)
    {
        static constexpr std::array names { "text", "code", "code_block", "heading", "paragraph", "strong", "emph",
            "strikethrough", "link", "image", "item", "block_quote", "table", "html", "list", "break",
            "thematic_break" };
        auto const value = node.value();
        std::visit([&](auto const& payload) { write(QString::fromLatin1(names.at(value.index())), payload); }, value);
    }

    template<typename Payload>
    void write(QString name, Payload const& payload)
    {
        QString attributes;
        if constexpr (requires { payload.level; })
            attributes = u" level=\"%1\""_s.arg(payload.level);
        if constexpr (requires { payload.destination; })
            attributes = u" destination=\"%1\""_s.arg(payload.destination.value_or(u"").toString().toHtmlEscaped());
        if constexpr (requires { payload.source; })
            attributes = u" destination=\"%1\""_s.arg(payload.source.value_or(u"").toString().toHtmlEscaped());
        if constexpr (requires { payload.checked; }) {
            name = payload.checked ? u"tasklist"_s : name;
            attributes = payload.checked ? u" completed=\"%1\""_s.arg(*payload.checked ? u"true" : u"false") : u""_s;
        }
        if constexpr (requires { payload.block; })
            name += payload.block ? u"_block"_s : u"_inline"_s;
        if constexpr (requires { payload.string; })
            xml += u"<%1>%2</%1>\n"_s.arg(name, payload.string.toString().toHtmlEscaped());
        else if constexpr (requires { payload.children; })
            write(name, attributes, payload.children);
        else if constexpr (requires { payload.rows; })
            write(name, attributes, payload.rows);
        else
            write(name, attributes, ParsedMarkdown().nodes());
    }

    template<typename Children>
    void write(QString const& name, QString const& attributes, Children children)
    {
        xml += u"<%1%2%3>\n"_s.arg(name, attributes, children.isEmpty() ? u" /"_s : u""_s);
        for (auto const child : children)
            (*this)(child);
        xml += children.isEmpty() ? u""_s : u"</%1>\n"_s.arg(name);
    }

    QString xml;
};

// The library's own account, without what the program's tree has no place for.
QString expectedXml(QByteArray const& text)
{
    static QRegularExpression const attributes(u" (title|info|type|start)=\"[^\"]*\""_s),
        breaks(u"<(soft|line)break"_s), rows(u"(</?)table_(header|row)"_s),
        innermostImage(
            u"<image([^<>]*\")>((?!<image[^<>]*\">).)*?</image>"_s, QRegularExpression::DotMatchesEverythingOption);
    auto xml = parserXml(text).remove(attributes).replace(breaks, u"<break"_s).replace(rows, u"\\1row"_s);
    while (xml.contains(innermostImage))
        xml.replace(innermostImage, u"<image\\1 />"_s);
    return xml;
}

TEST(ParsedMarkdown, Its_tree_is_what_the_parsers_tree_says)
{
    auto texts = MarkdownSamples::snippets();
    texts << QByteArray("a\n\n").repeated(60'000) << QByteArray("a|b\n-|-\n").repeated(60'000);
    for (std::uint32_t seed = 20'000; seed < 24'000; ++seed)
        texts << MarkdownSamples::random(seed) << MarkdownSamples::randomTables(seed);
    for (auto const& text : texts) {
        auto const tree = ParsedMarkdown::parsingUtf8(text);
        Writer writer;
        writer.write(u"document"_s, {}, tree.nodes());
        ASSERT_TRUE(writer.xml == expectedXml(text))
            << text.left(1000).toStdString() << writer.xml.left(1000).toStdString();
        ASSERT_EQ(ParsedMarkdown::parsing(QString::fromUtf8(text)), tree) << text.toStdString();
    }
    EXPECT_EQ(parsed(u"- a\n- **b**"_s).nodeCount(), 8);
    EXPECT_EQ(parsed(u"|a|\n|-|\n|b|"_s).nodeCount(), 3) << "rows and cells are no nodes";
}

TEST(ParsedMarkdown, Trees_are_equal_when_their_nodes_and_payloads_are)
{
    forEachCase(u"equal trees"_s, [](auto const& row) { EXPECT_EQ(parsed(row[0]), parsed(row[1])); });
    QList<ParsedMarkdown> different;
    forEachCase(u"different trees"_s, [&](auto const& text) {
        EXPECT_THAT(different, Not(Contains(parsed(text))));
        different << parsed(text);
        EXPECT_EQ(different.last(), parsed(text));
    });
    EXPECT_EQ(ParsedMarkdown(), parsed(u""_s));
}

TEST(ParsedMarkdown, It_knows_its_title_and_its_images_wherever_they_stand)
{
    forEachCase(u"titles"_s, [](auto const& row) {
        EXPECT_EQ(parsed(row[0]).firstHeadingTitle(), textIn(row[1]));
        EXPECT_THAT(
            parsed(row[0]).imageSources().values(), UnorderedElementsAreArray(row[2].toVariant().toStringList()));
    });
}

TEST(ParsedMarkdown, Trees_of_any_depth_are_walked_compared_and_freed)
{
    for (auto const* const piece : { "> ", "- ", "1. ", "*a ", "[![" }) {
        auto const text = QByteArray(piece).repeated(50'000) + "a"
            + QByteArray("*").repeated(piece[0] == '*' ? 50'000 : 0);
        auto const tree = ParsedMarkdown::parsingUtf8(text);
        EXPECT_EQ(tree, ParsedMarkdown::parsingUtf8(text)) << piece;
        int depth = 0;
        for (auto nodes = tree.nodes(), next = nodes; !nodes.isEmpty(); nodes = next, ++depth) {
            for (auto const node : nodes)
                next = node.children();
        }
        EXPECT_GE(depth, piece[0] == '[' ? 2 : 50'000) << piece;
    }
}

}
}
