#include "SheetJson.h"

#include "RenderedJson.h"

#include "FixedTextMeasure.h"
#include "rendering/MarkdownRenderer.h"
#include "rendering/ShortcutRenderer.h"

#include <array>
#include <variant>
#include <vector>

namespace Quillory {

namespace {

// Writes the nodes of a tree with a stack of its own, since they may be nested to any depth.
class NodeWriter {
public:
    explicit NodeWriter(JsonWriter& json)
        : m_json(json)
    {
    }

    void write(ParsedMarkdown::Nodes nodes)
    {
        begin(nodes);
        while (!m_open.empty())
            std::visit([this](auto& siblings) { step(siblings); }, m_open.back());
    }

private:
    template<typename Element>
    struct Open {
        typename ParsedMarkdown::Siblings<Element>::Iterator next, end;
        bool isMember; // an object ends with this array
    };
    using OpenNodes = Open<ParsedMarkdown::Node>;
    using OpenCells = Open<ParsedMarkdown::Cell>;
    using OpenRows = Open<ParsedMarkdown::Row>;

    void begin(ParsedMarkdown::Nodes nodes, bool isMember = false)
    {
        m_json.beginArray();
        m_open.push_back(OpenNodes { nodes.begin(), nodes.end(), isMember });
    }

    template<typename Siblings>
    void step(Siblings& siblings)
    {
        if (siblings.next == siblings.end) {
            auto const isMember = siblings.isMember;
            m_open.pop_back();
            m_json.endArray();
            if (isMember)
                m_json.endObject();
            return;
        }
        auto const element = *siblings.next;
        ++siblings.next;
        enter(element);
    }

    void enter(ParsedMarkdown::Cell const& cell) { begin(cell.nodes); }

    void enter(ParsedMarkdown::Row const& row)
    {
        m_json.beginArray();
        m_open.push_back(OpenCells { row.cells.begin(), row.cells.end(), false });
    }

    void enter(ParsedMarkdown::Node const& node)
    {
        m_json.beginObject();
        node.visit([this](auto const& payload) { write(payload); });
    }

    void leaf(QStringView kind, QStringView string)
    {
        m_json.member(u"kind", kind);
        m_json.member(u"string", string);
        m_json.endObject();
    }

    void children(ParsedMarkdown::Nodes nodes)
    {
        m_json.key(u"children");
        begin(nodes, true);
    }

    void parent(QStringView kind, ParsedMarkdown::Nodes nodes)
    {
        m_json.member(u"kind", kind);
        children(nodes);
    }

    void write(ParsedMarkdown::Text const& text) { leaf(u"text", text.string); }
    void write(ParsedMarkdown::InlineCode const& code) { leaf(u"inlineCode", code.string); }
    void write(ParsedMarkdown::CodeBlock const& code) { leaf(u"codeBlock", code.string); }

    void write(ParsedMarkdown::Heading const& heading)
    {
        m_json.member(u"kind", u"heading");
        m_json.member(u"level", heading.level);
        m_json.member(u"text", heading.text);
        children(heading.children);
    }

    void write(ParsedMarkdown::Paragraph const& paragraph) { parent(u"paragraph", paragraph.children); }
    void write(ParsedMarkdown::Strong const& strong) { parent(u"strong", strong.children); }
    void write(ParsedMarkdown::Emphasis const& emphasis) { parent(u"emphasis", emphasis.children); }
    void write(ParsedMarkdown::Strikethrough const& struck) { parent(u"strikethrough", struck.children); }

    void write(ParsedMarkdown::Link const& link)
    {
        m_json.member(u"kind", u"link");
        m_json.member(u"destination", link.destination);
        children(link.children);
    }

    void write(ParsedMarkdown::Image const& image)
    {
        m_json.member(u"kind", u"image");
        m_json.member(u"source", image.source);
        m_json.member(u"description", image.description);
        m_json.endObject();
    }

    void write(ParsedMarkdown::ListItem const& item)
    {
        m_json.member(u"kind", u"listItem");
        m_json.member(u"checked", item.checked);
        children(item.children);
    }

    void write(ParsedMarkdown::BlockQuote const& quote) { parent(u"blockQuote", quote.children); }

    void write(ParsedMarkdown::Table const& table)
    {
        m_json.member(u"kind", u"table");
        m_json.key(u"rows");
        m_json.beginArray();
        m_open.push_back(OpenRows { table.rows.begin(), table.rows.end(), true });
    }

    void write(ParsedMarkdown::Html const& html)
    {
        m_json.member(u"kind", u"html");
        m_json.member(u"string", html.string);
        m_json.member(u"block", html.block);
        m_json.endObject();
    }

    void write(ParsedMarkdown::Container const& container) { parent(u"container", container.children); }

    void write(ParsedMarkdown::LineBreak) { bare(u"lineBreak"); }
    void write(ParsedMarkdown::ThematicBreak) { bare(u"thematicBreak"); }

    void bare(QStringView kind)
    {
        m_json.member(u"kind", kind);
        m_json.endObject();
    }

    JsonWriter& m_json;
    std::vector<std::variant<OpenNodes, OpenCells, OpenRows>> m_open;
};

// Absent fields of a sheet are left out.
void writeIfAny(JsonWriter& json, QStringView name, std::optional<QString> const& text)
{
    if (text)
        json.member(name, *text);
}

void writeStep(JsonWriter& json, ShortcutSheet::Step const& step)
{
    json.object([&] {
        json.key(u"modifiers");
        json.array(step.modifiers, [&](QString const& modifier) { json.value(modifier); });
        json.member(u"key", step.key);
    });
}

void writeEntry(JsonWriter& json, ShortcutSheet::Entry const& entry)
{
    json.object([&] {
        json.member(u"id", entry.id);
        json.member(u"title", entry.title);
        writeIfAny(json, u"text", entry.text);
        json.key(u"shortcuts");
        json.array(entry.shortcuts, [&](ShortcutSheet::Shortcut const& shortcut) {
            json.object([&] {
                json.key(u"steps");
                json.array(shortcut.steps, [&](ShortcutSheet::Step const& step) { writeStep(json, step); });
            });
        });
    });
}

void writeSection(JsonWriter& json, ShortcutSheet::Section const& section)
{
    json.object([&] {
        json.member(u"id", section.id);
        json.member(u"title", section.title);
        writeIfAny(json, u"description", section.description);
        json.key(u"entries");
        json.array(section.entries, [&](ShortcutSheet::Entry const& entry) { writeEntry(json, entry); });
        writeIfAny(json, u"icon", section.icon);
    });
}

void writeShortcuts(JsonWriter& json, ShortcutSheet const& sheet)
{
    json.object([&] {
        json.member(u"schemaVersion", sheet.schemaVersion);
        json.member(u"title", sheet.title);
        writeIfAny(json, u"description", sheet.description);
        json.key(u"sections");
        json.array(sheet.sections, [&](ShortcutSheet::Section const& section) { writeSection(json, section); });
        writeIfAny(json, u"icon", sheet.icon);
    });
}

QStringView kindOf(Sheet const& sheet)
{
    return sheet.parsed ? u"markdown" : sheet.shortcuts ? u"structured" : u"unreadable";
}

}

void writeRendering(JsonWriter& json, Sheet const& sheet, Page const& page)
{
    if (sheet.parsed)
        writeRendered(json, MarkdownRenderer::render(*sheet.parsed, sheet.title, sheet.images, page.textSize));
    else if (sheet.shortcuts)
        writeRendered(json,
            ShortcutRenderer::render(*sheet.shortcuts, sheet.images, page.width, page.textSize, FixedTextMeasure()));
    else
        json.null();
}

void writeSheet(JsonWriter& json, Sheet const& sheet, std::optional<Page> const& page)
{
    json.beginObject();
    json.member(u"id", sheet.id);
    json.member(u"title", sheet.title);
    json.member(u"kind", kindOf(sheet));
    json.member(u"sourceBytes", sheet.source.toUtf8().size());
    json.member(u"error", sheet.error);
    json.key(u"nodes");
    sheet.parsed ? NodeWriter(json).write(sheet.parsed->nodes()) : json.null();
    json.key(u"shortcuts");
    sheet.shortcuts ? writeShortcuts(json, *sheet.shortcuts) : json.null();
    json.key(u"images");
    json.beginObject();
    for (auto const& [reference, image] : sheet.images.asKeyValueRange()) {
        json.key(reference);
        json.array(std::array { image.cgImage.width(), image.cgImage.height() }, [&](int side) { json.value(side); });
    }
    json.endObject();
    json.key(u"iconWarnings");
    json.array(sheet.iconWarnings, [&](QString const& warning) { json.value(warning); });
    if (page) {
        json.key(u"rendered");
        writeRendering(json, sheet, *page);
    }
    json.endObject();
}

}
