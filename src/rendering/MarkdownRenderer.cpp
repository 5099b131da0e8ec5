#include "rendering/MarkdownRenderer.h"

#include "text/TextOrder.h"

#include <QCoreApplication>
#include <QUrl>

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>
#include <optional>
#include <variant>
#include <vector>

namespace Quillory {

namespace {

using Node = ParsedMarkdown::Node;
using Nodes = ParsedMarkdown::Nodes;
using Rows = ParsedMarkdown::Siblings<ParsedMarkdown::Row>;
using Cells = ParsedMarkdown::Siblings<ParsedMarkdown::Cell>;
using Builder = AttributedText::Builder;

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

// The looks that nodes of one place in the tree share. Attributes are looked up by it, so it is kept small.
struct Look {
    enum class Font : quint8 { body, bold, italic, heading, title, code };

    Font font = Font::body;
    bool secondary = false;
    bool struckThrough = false;
    bool shaded = false;
    bool linked = false; // to the one link that is open: links don't lie in links
    Builder::StyleId style {};

    // All looks but for their styles, numbered.
    static constexpr std::size_t count = 6 << 4U;
    std::size_t number() const
    {
        return (static_cast<std::size_t>(font) << 4U) + (secondary ? 8U : 0U) + (struckThrough ? 4U : 0U)
            + (shaded ? 2U : 0U) + (linked ? 1U : 0U);
    }
};

// Walks the tree with a stack of its own: sheets may be nested deeper than the thread's stack.
class Renderer {
public:
    Renderer(MarkdownRenderer::Images const& images, double textSize)
        : m_images(images)
        , m_textSize(textSize)
        , m_plainStyle(m_text.add(ParagraphStyle()))
        , m_headingStyle(m_text.add(ParagraphStyle { .paragraphSpacing = headingSpacing, .isHeading = true }))
    {
    }

    MarkdownRenderer::Beginning render(ParsedMarkdown const& parsed, QString const& title, qsizetype characters)
    {
        // Decorations make up for what isn't drawn, such as addresses.
        m_text.reserve(std::min(parsed.stringsLength(), characters));
        auto const nodes = parsed.nodes();
        auto first = nodes.begin();
        if (first != nodes.end() && isTitle(*first, title))
            ++first;
        m_open.push_back({ .look = { .style = m_plainStyle }, .content = OpenNodes { first, nodes.end(), {} } });
        while (!m_open.empty() && (m_text.length() < characters || m_isInTable))
            std::visit([this](auto& content) { step(content); }, m_open.back().content);
        auto text = std::move(m_text).build();
        return { { text, CopyTargets(text.string(), std::move(m_targets)) }, m_open.empty() };
    }

private:
    struct OpenNodes {
        Nodes::Iterator next, end;
        QStringView ending; // appended after the last node
    };

    struct OpenTable {
        Rows::Iterator row, lastRow;
        Cells::Iterator cell, lastCell;
        Builder::StyleId headStyle, bodyStyle;
        TableCell place; // of the next cell
    };

    struct Open {
        Look look; // in force here
        std::variant<OpenNodes, OpenTable> content;
    };

    static bool isTitle(Node node, QString const& title)
    {
        if (node.kind() != ParsedMarkdown::Kind::heading)
            return false;
        auto const heading = std::get<ParsedMarkdown::Heading>(node.value());
        return heading.level == 1 && canonicallyEqual(heading.text, title);
    }

    // One node, or the end of the innermost ones. What is open may move when more is opened.
    void step(OpenNodes& nodes)
    {
        if (nodes.next == nodes.end) {
            appendText(nodes.ending);
            m_open.pop_back();
            return;
        }
        auto const node = *nodes.next;
        ++nodes.next;
        node.visit([this](auto const& payload) { append(payload); });
    }

    // One cell, or the end of a row or of the table.
    void step(OpenTable& table)
    {
        if (table.cell != table.lastCell) {
            auto const nodes = (*table.cell).nodes;
            auto changed = look();
            if (table.place.row == 0)
                changed.font = Look::Font::bold;
            changed.style = m_text.add(table.place.row == 0 ? table.headStyle : table.bodyStyle, table.place);
            ++table.cell;
            ++table.place.column;
            return open(nodes, changed, u"\n");
        }
        if (++table.row == table.lastRow) {
            appendText(u"\n");
            m_open.pop_back();
            m_isInTable = false;
            return;
        }
        ++table.place.row;
        beginRow(table);
    }

    static void beginRow(OpenTable& table)
    {
        auto const cells = (*table.row).cells;
        table.cell = cells.begin();
        table.lastCell = cells.end();
        table.place.column = 0;
    }

    Look const& look() const { return m_open.back().look; }

    Look with(Look::Font font) const
    {
        auto changed = look();
        changed.font = font;
        return changed;
    }

    void open(Nodes children, Look changed, QStringView ending = {})
    {
        m_open.push_back({ .look = changed, .content = OpenNodes { children.begin(), children.end(), ending } });
    }

    FontAttribute fontOf(Look::Font font) const
    {
        using enum FontAttribute::Weight;
        switch (font) {
        case Look::Font::body:
            return { .size = m_textSize };
        case Look::Font::bold:
            return { .size = m_textSize, .weight = bold };
        case Look::Font::italic:
            return { .size = m_textSize, .italic = true };
        case Look::Font::heading:
            return { .size = m_textSize, .weight = semibold };
        case Look::Font::title:
            return { .size = m_textSize + titleSizeIncrease, .weight = semibold };
        case Look::Font::code:
            return { .family = FontAttribute::Family::monospaced, .size = m_textSize };
        }
        Q_UNREACHABLE();
    }

    Builder::AttributesId attributesOf(Look const& look)
    {
        auto& known = m_attributes[look.number()];
        if (!known) {
            known = m_text.add({
                .font = fontOf(look.font),
                .color = { look.secondary ? ColorRole::secondaryLabel : ColorRole::label },
                .background = look.shaded ? std::optional(shade) : std::nullopt,
                .link = look.linked ? m_link : QString(),
                .strikethrough = look.struckThrough,
            });
        }
        return *known;
    }

    void appendText(QStringView text, Look const& look) { m_text.appendKnown(text, attributesOf(look), look.style); }
    void appendText(QStringView text) { appendText(text, look()); }

    void append(ParsedMarkdown::Text const& text) { appendText(text.string); }

    void append(ParsedMarkdown::InlineCode const& code)
    {
        auto changed = with(Look::Font::code);
        changed.shaded = true;
        m_targets.append(CopyTargets::Place::inLine(m_text.length(), code.string.size()));
        appendText(code.string, changed);
    }

    void append(ParsedMarkdown::CodeBlock const& code)
    {
        auto shown = code.string;
        if (shown.endsWith(u'\n'))
            shown.chop(1);
        auto const isBlank = shown.isEmpty();
        if (isBlank)
            shown = u" ";

        auto const location = m_text.length();
        auto const firstFeed = shown.indexOf(u'\n');
        auto const lastFeed = shown.lastIndexOf(u'\n');
        auto changed = with(Look::Font::code);
        if (firstFeed >= 0) {
            changed.style = codeStyle(true, false);
            appendText(shown.first(firstFeed + 1), changed);
            changed.style = codeStyle(false, false);
            appendText(shown.first(lastFeed + 1).sliced(firstFeed + 1), changed);
        }
        changed.style = codeStyle(firstFeed < 0, true);
        appendText(shown.sliced(lastFeed + 1), changed);
        appendText(u"\n", changed);
        // The copied text stands in the shown text as well, with the line feed that it may end in.
        auto const copied = location + (isBlank ? 1 : 0);
        m_targets.append(CopyTargets::Place::block(location, shown.size(), copied, code.string.size()));
    }

    Builder::StyleId codeStyle(bool isFirst, bool isLast)
    {
        auto& known = m_codeStyles[(isFirst ? 2U : 0U) + (isLast ? 1U : 0U)];
        if (!known) {
            known = m_text.add(ParagraphStyle {
                .firstLineHeadIndent = codeIndent,
                .headIndent = codeIndent,
                .tailIndent = codeTailIndent,
                .minimumLineHeight = m_textSize + codeLineIncrease,
                .paragraphSpacingBefore = isFirst ? codeSpacingBefore : 0,
                .paragraphSpacing = isLast ? codeSpacingAfter : 0,
                .wrapping = ParagraphStyle::Wrapping::atContainer,
            });
        }
        return *known;
    }

    void append(ParsedMarkdown::Heading const& heading)
    {
        auto changed = with(heading.level == 1 ? Look::Font::title : Look::Font::heading);
        changed.style = m_headingStyle;
        open(heading.children, changed, u"\n");
    }

    void append(ParsedMarkdown::Paragraph const& paragraph) { open(paragraph.children, look(), u"\n\n"); }
    void append(ParsedMarkdown::Strong const& strong) { open(strong.children, with(Look::Font::bold)); }
    void append(ParsedMarkdown::Emphasis const& emphasis) { open(emphasis.children, with(Look::Font::italic)); }

    void append(ParsedMarkdown::Strikethrough const& strikethrough)
    {
        auto changed = look();
        changed.struckThrough = true;
        open(strikethrough.children, changed);
    }

    void append(ParsedMarkdown::Link const& link)
    {
        auto changed = look();
        auto const url = link.destination ? QUrl(link.destination->toString(), QUrl::TolerantMode) : QUrl();
        auto const scheme = url.scheme();
        if (url.isValid() && (scheme == QLatin1StringView("http") || scheme == QLatin1StringView("https"))) {
            changed.linked = true;
            useLink(url.toString(QUrl::FullyEncoded));
        }
        open(link.children, changed);
    }

    void useLink(QString const& link)
    {
        if (link == m_link)
            return;
        m_link = link;
        for (std::size_t number = 1; number < Look::count; number += 2)
            m_attributes[number].reset();
    }

    void append(ParsedMarkdown::Image const& image)
    {
        auto const prepared = image.source ? m_images.constFind(image.source->toString()) : m_images.cend();
        if (prepared == m_images.cend()) {
            return appendText(
                QCoreApplication::translate("MarkdownRenderer", "[Image unavailable: %1]").arg(image.description));
        }
        auto const width = static_cast<double>(prepared->cgImage.width());
        auto const height = static_cast<double>(prepared->cgImage.height());
        auto const scale = width > 1 ? std::min(largestImageWidth / width, 1.0) : 1.0;
        m_text.appendAttachment({ .attachment = Attachment { *prepared, width * scale, height * scale } }, {});
    }

    void append(ParsedMarkdown::ListItem const& item)
    {
        appendText(!item.checked ? u"• " : *item.checked ? u"☑ " : u"☐ ");
        open(item.children, look());
    }

    void append(ParsedMarkdown::BlockQuote const& quote)
    {
        auto changed = look();
        changed.secondary = true;
        appendText(u"│ ", changed);
        open(quote.children, changed);
    }

    void append(ParsedMarkdown::Table const& table)
    {
        TableBlock block {
            .columns = columnCount(table),
            .padding = cellPadding,
            .borderWidth = cellBorder,
        };
        auto const bodyStyle = m_text.add(ParagraphStyle { .block = block });
        block.background = shade;
        OpenTable content {
            .row = table.rows.begin(),
            .lastRow = table.rows.end(),
            .headStyle = m_text.add(ParagraphStyle { .block = block }),
            .bodyStyle = bodyStyle,
            .place = { .table = m_tables++ },
        };
        beginRow(content); // a table has its head at least
        m_isInTable = true;
        m_open.push_back({ .look = look(), .content = content });
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

    void append(ParsedMarkdown::Container const& container) { open(container.children, look()); }
    void append(ParsedMarkdown::LineBreak) { appendText(u"\n"); }
    void append(ParsedMarkdown::ThematicBreak) { appendText(u"────────────────────────\n\n"); }

    MarkdownRenderer::Images const& m_images;
    double m_textSize;
    Builder m_text;
    QList<CopyTargets::Place> m_targets;
    std::vector<Open> m_open;
    std::array<std::optional<Builder::AttributesId>, Look::count> m_attributes;
    std::array<std::optional<Builder::StyleId>, 4> m_codeStyles;
    Builder::StyleId m_plainStyle;
    Builder::StyleId m_headingStyle;
    QString m_link; // the last one
    int m_tables = 0;
    bool m_isInTable = false; // in its cells there are no tables
};

}

RenderedMarkdown MarkdownRenderer::render(
    ParsedMarkdown const& parsed, QString const& title, Images const& images, double textSize)
{
    return renderBeginning(parsed, title, images, textSize, std::numeric_limits<qsizetype>::max()).rendered;
}

MarkdownRenderer::Beginning MarkdownRenderer::renderBeginning(
    ParsedMarkdown const& parsed, QString const& title, Images const& images, double textSize, qsizetype characters)
{
    return Renderer(images, textSize).render(parsed, title, characters);
}

RenderedMarkdown MarkdownRenderer::render(
    QString const& source, QString const& title, Images const& images, double textSize)
{
    return render(ParsedMarkdown::parsing(source), title, images, textSize);
}

}
