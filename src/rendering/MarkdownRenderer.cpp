#include "rendering/MarkdownRenderer.h"

#include "text/TextOrder.h"

#include <QUrl>

#include <algorithm>
#include <cstddef>
#include <variant>
#include <vector>

namespace Quillory {

namespace {

using Node = ParsedMarkdown::Node;
using Nodes = ParsedMarkdown::Nodes;
using Rows = ParsedMarkdown::Siblings<ParsedMarkdown::Row>;
using Cells = ParsedMarkdown::Siblings<ParsedMarkdown::Cell>;

constexpr double headingSpacing = 6;
constexpr double titleSizeIncrease = 4;
constexpr double codeIndent = 8;
constexpr double codeTailIndent = -64; // clear of the copy button
constexpr double codeLineIncrease = 4;
constexpr double codeSpacingBefore = 8;
constexpr double codeSpacingAfter = 20;
constexpr double largestImageWidth = 360;
constexpr double cellPadding = 5;
constexpr double cellBorder = 0.5;
constexpr Color shade { ColorRole::quaternaryLabel, 0.12 };

// The attributes that hold for the nodes of one place in the tree.
struct Style {
    TextAttributes attributes;
    ParagraphStyle paragraph;

    bool operator==(Style const&) const = default;
};

// Walks the tree with a stack of its own: sheets may be nested deeper than the thread's stack.
class Renderer {
public:
    Renderer(MarkdownRenderer::Images const& images, double textSize)
        : m_images(images)
        , m_textSize(textSize)
    {
        m_styles.push_back({ .attributes = { .font = { .size = textSize } }, .paragraph = {} });
    }

    RenderedMarkdown render(Nodes nodes, QString const& title)
    {
        auto first = nodes.begin();
        if (first != nodes.end() && isTitle(*first, title))
            ++first;
        m_open.push_back({ .style = 0, .content = OpenNodes { first, nodes.end(), {} } });
        while (!m_open.empty())
            std::visit([this](auto& content) { step(content); }, m_open.back().content);
        return { std::move(m_text).build(), std::move(m_targets) };
    }

private:
    struct OpenNodes {
        Nodes::Iterator next, end;
        QStringView ending; // appended behind the last node
    };

    struct OpenTable {
        Rows::Iterator row, lastRow;
        Cells::Iterator cell, lastCell;
        TableBlock block; // of the next cell
    };

    struct Open {
        std::size_t style; // in force here, a position in m_styles
        std::variant<OpenNodes, OpenTable> content;
    };

    static bool isTitle(Node node, QString const& title)
    {
        if (node.kind() != ParsedMarkdown::Kind::heading)
            return false;
        auto const heading = std::get<ParsedMarkdown::Heading>(node.value());
        return heading.level == 1 && canonicallyEqual(heading.text, title);
    }

    Style const& style() const { return m_styles[m_open.back().style]; }

    // One node, or the end of the innermost ones. What is open may move when more is opened.
    void step(OpenNodes& nodes)
    {
        if (nodes.next == nodes.end) {
            appendText(nodes.ending);
            return close();
        }
        auto const node = *nodes.next;
        ++nodes.next;
        std::visit([this](auto const& value) { append(value); }, node.value());
    }

    // One cell, or the end of a row or of the table.
    void step(OpenTable& table)
    {
        if (table.cell != table.lastCell) {
            auto const cell = *table.cell;
            auto const block = table.block;
            ++table.cell;
            ++table.block.column;
            return openCell(cell, block);
        }
        if (++table.row == table.lastRow) {
            appendText(u"\n");
            return close();
        }
        ++table.block.row;
        beginRow(table);
    }

    void openCell(ParsedMarkdown::Cell const& cell, TableBlock const& block)
    {
        auto changed = style();
        changed.paragraph = { .block = block };
        if (block.row == 0) {
            changed.paragraph.block->background = shade;
            changed.attributes.font = { .size = m_textSize, .weight = FontAttribute::Weight::bold };
        }
        open(cell.nodes, std::move(changed), u"\n");
    }

    static void beginRow(OpenTable& table)
    {
        auto const cells = (*table.row).cells;
        table.cell = cells.begin();
        table.lastCell = cells.end();
        table.block.column = 0;
    }

    void open(Nodes children, QStringView ending = {})
    {
        m_open.push_back(
            { .style = m_open.back().style, .content = OpenNodes { children.begin(), children.end(), ending } });
    }

    void open(Nodes children, Style changed, QStringView ending = {})
    {
        open(children, ending);
        use(std::move(changed));
    }

    void close()
    {
        m_open.pop_back();
        if (!m_open.empty())
            m_styles.erase(m_styles.begin() + static_cast<std::ptrdiff_t>(m_open.back().style) + 1, m_styles.end());
    }

    void use(Style changed)
    {
        if (changed == style())
            return;
        m_styles.push_back(std::move(changed));
        m_open.back().style = m_styles.size() - 1;
    }

    Style withFont(FontAttribute font) const
    {
        auto changed = style();
        changed.attributes.font = font;
        return changed;
    }

    void appendText(QStringView text) { m_text.append(text, style().attributes, style().paragraph); }

    void append(ParsedMarkdown::Text const& text) { appendText(text.string); }

    void append(ParsedMarkdown::InlineCode const& code)
    {
        auto attributes = style().attributes;
        attributes.font = { .family = FontAttribute::Family::monospaced, .size = m_textSize };
        attributes.background = shade;
        auto const location = m_text.length();
        m_text.append(code.string, attributes, style().paragraph);
        m_targets.push_back({ .range = { location, m_text.length() - location }, .text = code.string.toString() });
    }

    void append(ParsedMarkdown::CodeBlock const& code)
    {
        auto shown = code.string;
        if (shown.endsWith(u'\n'))
            shown.chop(1);
        if (shown.isEmpty())
            shown = u" ";

        auto attributes = style().attributes;
        attributes.font = { .family = FontAttribute::Family::monospaced, .size = m_textSize };
        auto const location = m_text.length();
        qsizetype lineStart = 0;
        for (bool isLast = false; !isLast;) {
            auto const lineFeed = shown.indexOf(u'\n', lineStart);
            isLast = lineFeed < 0;
            auto const lineEnd = isLast ? shown.size() : lineFeed;
            auto const paragraph = codeLine(lineStart == 0, isLast);
            m_text.append(shown.sliced(lineStart, lineEnd - lineStart), attributes, paragraph);
            m_text.append(u"\n", attributes, paragraph);
            lineStart = lineEnd + 1;
        }
        m_targets.push_back({ .range = { location, shown.size() }, .text = code.string.toString(), .isBlock = true });
    }

    ParagraphStyle codeLine(bool isFirst, bool isLast) const
    {
        return {
            .firstLineHeadIndent = codeIndent,
            .headIndent = codeIndent,
            .tailIndent = codeTailIndent,
            .minimumLineHeight = m_textSize + codeLineIncrease,
            .paragraphSpacingBefore = isFirst ? codeSpacingBefore : 0,
            .paragraphSpacing = isLast ? codeSpacingAfter : 0,
        };
    }

    void append(ParsedMarkdown::Heading const& heading)
    {
        auto const size = heading.level == 1 ? m_textSize + titleSizeIncrease : m_textSize;
        auto changed = withFont({ .size = size, .weight = FontAttribute::Weight::semibold });
        changed.paragraph = { .paragraphSpacing = headingSpacing };
        open(heading.children, std::move(changed), u"\n");
    }

    void append(ParsedMarkdown::Paragraph const& paragraph) { open(paragraph.children, u"\n\n"); }

    void append(ParsedMarkdown::Strong const& strong)
    {
        open(strong.children, withFont({ .size = m_textSize, .weight = FontAttribute::Weight::bold }));
    }

    void append(ParsedMarkdown::Emphasis const& emphasis)
    {
        open(emphasis.children, withFont({ .size = m_textSize, .italic = true }));
    }

    void append(ParsedMarkdown::Strikethrough const& strikethrough)
    {
        auto changed = style();
        changed.attributes.strikethrough = true;
        open(strikethrough.children, std::move(changed));
    }

    void append(ParsedMarkdown::Link const& link)
    {
        auto changed = style();
        auto const url = link.destination ? QUrl(link.destination->toString(), QUrl::TolerantMode) : QUrl();
        auto const scheme = url.scheme().toLower();
        if (url.isValid() && (scheme == QLatin1StringView("http") || scheme == QLatin1StringView("https")))
            changed.attributes.link = url.toString(QUrl::FullyEncoded);
        open(link.children, std::move(changed));
    }

    void append(ParsedMarkdown::Image const& image)
    {
        auto const prepared = image.source ? m_images.constFind(image.source->toString()) : m_images.cend();
        if (prepared == m_images.cend()) {
            appendText(u"[Image unavailable: ");
            appendText(image.description);
            return appendText(u"]");
        }
        auto const width = static_cast<double>(prepared->cgImage.width());
        auto const height = static_cast<double>(prepared->cgImage.height());
        auto const scale = width > 1 ? std::min(largestImageWidth / width, 1.0) : 1.0;
        m_text.appendAttachment({ .attachment = Attachment { *prepared, width * scale, height * scale } }, {});
    }

    void append(ParsedMarkdown::ListItem const& item)
    {
        appendText(!item.checked ? u"• " : *item.checked ? u"☑ " : u"☐ ");
        open(item.children);
    }

    void append(ParsedMarkdown::BlockQuote const& quote)
    {
        auto changed = style();
        changed.attributes.color = { ColorRole::secondaryLabel };
        open(quote.children, std::move(changed));
        appendText(u"│ ");
    }

    void append(ParsedMarkdown::Table const& table)
    {
        OpenTable content {
            .row = table.rows.begin(),
            .lastRow = table.rows.end(),
            .block = { .table = m_tables++,
                .columns = columnCount(table),
                .padding = cellPadding,
                .borderWidth = cellBorder },
        };
        beginRow(content); // a table has its head at least
        m_open.push_back({ .style = m_open.back().style, .content = content });
    }

    static int columnCount(ParsedMarkdown::Table const& table)
    {
        int columns = 0;
        for (auto const row : table.rows) {
            int cells = 0;
            for ([[maybe_unused]] auto const cell : row.cells)
                ++cells;
            columns = std::max(columns, cells);
        }
        return columns;
    }

    void append(ParsedMarkdown::Html const& html)
    {
        appendText(html.string);
        if (html.block)
            appendText(u"\n");
    }

    void append(ParsedMarkdown::Container const& container) { open(container.children); }
    void append(ParsedMarkdown::LineBreak) { appendText(u"\n"); }
    void append(ParsedMarkdown::ThematicBreak) { appendText(u"────────────────────────\n\n"); }

    MarkdownRenderer::Images const& m_images;
    double m_textSize;
    AttributedText::Builder m_text;
    std::vector<CopyTarget> m_targets;
    std::vector<Style> m_styles;
    std::vector<Open> m_open;
    int m_tables = 0;
};

}

RenderedMarkdown MarkdownRenderer::render(
    ParsedMarkdown const& parsed, QString const& title, Images const& images, double textSize)
{
    return Renderer(images, textSize).render(parsed.nodes(), title);
}

RenderedMarkdown MarkdownRenderer::render(
    QString const& source, QString const& title, Images const& images, double textSize)
{
    return render(ParsedMarkdown::parsing(source), title, images, textSize);
}

}
