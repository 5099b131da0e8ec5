#include "Markdown/DocumentDump.h"

#include <vector>

namespace Quillory {

namespace {

struct Describe {
    std::string operator()(Markup::DocumentRoot) const { return "document"; }
    std::string operator()(Markup::BlockQuote) const { return "block_quote"; }
    std::string operator()(Markup::OrderedList list) const { return "list ordered " + std::to_string(list.startIndex); }
    std::string operator()(Markup::UnorderedList) const { return "list bullet"; }
    std::string operator()(Markup::ListItem item) const
    {
        return !item.checkbox ? "item" : *item.checkbox == Markup::Checkbox::checked ? "tasklist x" : "tasklist";
    }
    std::string operator()(Markup::CodeBlock block) const
    {
        return "code_block" + quoted(block.code) + quoted(block.language);
    }
    std::string operator()(Markup::HTMLBlock block) const { return "html_block" + quoted(block.rawHTML); }
    std::string operator()(Markup::CustomBlock) const { return "custom_block"; }
    std::string operator()(Markup::Paragraph) const { return "paragraph"; }
    std::string operator()(Markup::Heading heading) const { return "heading " + std::to_string(heading.level); }
    std::string operator()(Markup::ThematicBreak) const { return "thematic_break"; }
    std::string operator()(Markup::Text text) const { return "text" + quoted(text.string); }
    std::string operator()(Markup::SoftBreak) const { return "softbreak"; }
    std::string operator()(Markup::LineBreak) const { return "linebreak"; }
    std::string operator()(Markup::InlineCode code) const { return "code" + quoted(code.code); }
    std::string operator()(Markup::InlineHTML html) const { return "html_inline" + quoted(html.rawHTML); }
    std::string operator()(Markup::CustomInline custom) const { return "custom_inline" + quoted(custom.string); }
    std::string operator()(Markup::Emphasis) const { return "emph"; }
    std::string operator()(Markup::Strong) const { return "strong"; }
    std::string operator()(Markup::Strikethrough) const { return "strikethrough"; }
    std::string operator()(Markup::Link link) const { return "link" + quoted(link.destination) + quoted(link.title); }
    std::string operator()(Markup::Image image) const { return "image" + quoted(image.source) + quoted(image.title); }
    std::string operator()(Markup::InlineAttributes inlines) const { return "attribute" + quoted(inlines.attributes); }
    std::string operator()(Markup::Table const& table) const
    {
        std::string line = "table ";
        for (auto const& alignment : table.columnAlignments)
            line += alignment ? "lcr"[static_cast<int>(*alignment)] : '.';
        return line;
    }
    std::string operator()(Markup::Table::Head) const { return "table_header"; }
    std::string operator()(Markup::Table::Body) const { return "body"; }
    std::string operator()(Markup::Table::Row) const { return "table_row"; }
    std::string operator()(Markup::Table::Cell cell) const
    {
        return "table_cell " + std::to_string(cell.colspan) + ' ' + std::to_string(cell.rowspan);
    }
};

std::string payloadOf(cmark_node* node, std::string_view type)
{
    auto const strings = [&] {
        return quotedUnlessEmpty(cmark_node_get_url(node)) + quotedUnlessEmpty(cmark_node_get_title(node));
    };
    if (type == "list") {
        return cmark_node_get_list_type(node) == CMARK_BULLET_LIST
            ? " bullet"
            : " ordered " + std::to_string(cmark_node_get_list_start(node));
    }
    if (type == "tasklist")
        return cmark_gfm_extensions_get_tasklist_item_checked(node) ? " x" : "";
    if (type == "heading")
        return ' ' + std::to_string(cmark_node_get_heading_level(node));
    if (type == "code_block")
        return quoted(std::string_view(cmark_node_get_literal(node)))
            + quotedUnlessEmpty(cmark_node_get_fence_info(node));
    if (type == "link" || type == "image")
        return strings();
    if (type == "table_cell")
        return " 1 1";
    if (type == "table") {
        std::string alignments = " ";
        for (int column = 0; column < cmark_gfm_extensions_get_table_columns(node); ++column) {
            char const alignment = static_cast<char>(cmark_gfm_extensions_get_table_alignments(node)[column]);
            alignments += alignment ? alignment : '.';
        }
        return alignments;
    }
    auto const* const literal = cmark_node_get_literal(node);
    return literal ? quoted(std::string_view(literal)) : "";
}

}

std::string dumpOf(Markup::Document const& document)
{
    std::string dump;
    auto const add = [&](Markup::Element element, std::size_t depth) {
        dump += std::to_string(depth) + ' ' + std::visit(Describe {}, element.data()) + '\n';
    };
    struct Level {
        Markup::ElementChildren::Iterator next, end;
    };
    add(document.root(), 0);
    std::vector<Level> levels { { document.children().begin(), document.children().end() } };
    while (!levels.empty()) {
        auto& [next, end] = levels.back();
        if (next == end) {
            levels.pop_back();
            continue;
        }
        auto const element = *next;
        ++next;
        add(element, levels.size());
        levels.push_back({ element.children().begin(), element.children().end() });
    }
    return dump;
}

std::string dumpOf(ParserTree const& tree)
{
    std::string dump;
    std::size_t depth = 0;
    auto const enter = [&](cmark_node* node) {
        auto const type = ParserTree::typeOf(node);
        depth += type == "table_row" ? 1U : 0U;
        dump += std::to_string(depth++) + ' ' + std::string(type) + payloadOf(node, type) + '\n';
        return true;
    };
    auto const leave = [&](cmark_node* node) {
        auto const type = ParserTree::typeOf(node);
        depth -= type == "table_row" ? 2U : 1U;
        if (type == "table_header")
            dump += std::to_string(depth) + " body\n";
    };
    ParserTree::walk(tree.root(), enter, leave);
    return dump;
}

}
