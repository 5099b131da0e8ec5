#include "Markdown/TreeConverter.h"

#include <QStringDecoder>

#include <cmark-gfm-core-extensions.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <string_view>

namespace Quillory::Markup {

namespace {

using Kind = RawMarkupKind;

class Converter {
public:
    explicit Converter(std::size_t sourceSize)
    {
        m_storage.pool.reserve(static_cast<qsizetype>(sourceSize));
        m_storage.elements.reserve(sourceSize / 12 + 1);
    }

    RawMarkupStorage convert(cmark_node* root)
    {
        auto* const iterator = cmark_iter_new(root);
        for (auto event = cmark_iter_next(iterator); event != CMARK_EVENT_DONE; event = cmark_iter_next(iterator)) {
            auto* const node = cmark_iter_get_node(iterator);
            if (event == CMARK_EVENT_ENTER)
                enter(node);
            else
                exit();
        }
        cmark_iter_free(iterator);
        return std::move(m_storage);
    }

private:
    // Elements that can hold others are left by an event of their own; the rest end where they began.
    void open(Kind kind, std::uint8_t number = 0, std::uint32_t start = 0)
    {
        m_open.push_back(static_cast<std::uint32_t>(m_storage.elements.size()));
        m_storage.elements.push_back({ .kind = kind, .number = number, .start = start });
    }

    void close()
    {
        m_storage.elements[m_open.back()].end = static_cast<std::uint32_t>(m_storage.elements.size());
        m_open.pop_back();
    }

    void leaf(Kind kind, char const* string = nullptr, char const* second = nullptr)
    {
        m_storage.elements.push_back({ .kind = kind });
        m_storage.elements.back().end = static_cast<std::uint32_t>(m_storage.elements.size());
        setStrings(string, second);
    }

    void setStrings(char const* string, char const* second = nullptr)
    {
        auto& element = m_storage.elements.back();
        element.offset = static_cast<std::uint32_t>(m_storage.pool.size());
        element.length = append(string);
        element.second = append(second);
    }

    std::uint32_t append(char const* string)
    {
        if (!string || !*string)
            return 0;
        auto const size = static_cast<qsizetype>(std::strlen(string));
        auto const before = m_storage.pool.size();
        m_storage.pool.resize(before + size);
        auto* const start = m_storage.pool.data() + before;
        auto* const end = m_decoder.appendToBuffer(start, QByteArrayView(string, size));
        m_storage.pool.truncate(before + (end - start));
        return static_cast<std::uint32_t>(end - start);
    }

    void enter(cmark_node* node)
    {
        switch (cmark_node_get_type(node)) {
        case CMARK_NODE_DOCUMENT:
            return open(Kind::document);
        case CMARK_NODE_BLOCK_QUOTE:
            return open(Kind::blockQuote);
        case CMARK_NODE_LIST:
            if (cmark_node_get_list_type(node) == CMARK_ORDERED_LIST)
                return open(Kind::orderedList, 0, static_cast<std::uint32_t>(cmark_node_get_list_start(node)));
            return open(Kind::unorderedList);
        case CMARK_NODE_ITEM:
            return open(Kind::listItem, boxOf(node));
        case CMARK_NODE_CODE_BLOCK:
            return leaf(Kind::codeBlock, cmark_node_get_literal(node), cmark_node_get_fence_info(node));
        case CMARK_NODE_HTML_BLOCK:
            return leaf(Kind::htmlBlock, cmark_node_get_literal(node));
        case CMARK_NODE_CUSTOM_BLOCK:
            return open(Kind::customBlock);
        case CMARK_NODE_PARAGRAPH:
            return open(Kind::paragraph);
        case CMARK_NODE_HEADING:
            return open(Kind::heading, static_cast<std::uint8_t>(cmark_node_get_heading_level(node)));
        case CMARK_NODE_THEMATIC_BREAK:
            return leaf(Kind::thematicBreak);
        case CMARK_NODE_TEXT:
            return leaf(Kind::text, cmark_node_get_literal(node));
        case CMARK_NODE_SOFTBREAK:
            return leaf(Kind::softBreak);
        case CMARK_NODE_LINEBREAK:
            return leaf(Kind::lineBreak);
        case CMARK_NODE_CODE:
            return leaf(Kind::inlineCode, cmark_node_get_literal(node));
        case CMARK_NODE_HTML_INLINE:
            return leaf(Kind::inlineHTML, cmark_node_get_literal(node));
        case CMARK_NODE_EMPH:
            return open(Kind::emphasis);
        case CMARK_NODE_STRONG:
            return open(Kind::strong);
        case CMARK_NODE_LINK:
            open(Kind::link);
            return setStrings(cmark_node_get_url(node), cmark_node_get_title(node));
        case CMARK_NODE_IMAGE:
            open(Kind::image);
            return setStrings(cmark_node_get_url(node), cmark_node_get_title(node));
        default:
            return enterOfExtension(node, cmark_node_get_type_string(node));
        }
    }

    // The types of extensions get their numbers when they are registered, so they are told by name.
    void enterOfExtension(cmark_node* node, std::string_view type)
    {
        if (type == "table") {
            open(Kind::table);
            appendAlignments(node);
        } else if (type == "table_header") {
            open(Kind::tableHead);
        } else if (type == "table_row") {
            if (m_storage.elements[m_open.back()].kind != Kind::tableBody)
                open(Kind::tableBody);
            open(Kind::tableRow);
        } else if (type == "table_cell") {
            open(Kind::tableCell, 0, 1U | 1U << 16U);
        } else if (type == "strikethrough") {
            open(Kind::strikethrough);
        } else {
            open(Kind::inlineAttributes);
        }
    }

    void exit()
    {
        // The body of a table has no node of its own: it ends with the table, and is there without rows too.
        auto const& innermost = m_storage.elements[m_open.back()];
        if (innermost.kind == Kind::tableBody) {
            close();
        } else if (innermost.kind == Kind::table) {
            open(Kind::tableBody);
            close();
        }
        close();
    }

    void appendAlignments(cmark_node* table)
    {
        auto const columns = cmark_gfm_extensions_get_table_columns(table);
        auto const* const alignments = cmark_gfm_extensions_get_table_alignments(table);
        auto& element = m_storage.elements.back();
        element.offset = static_cast<std::uint32_t>(m_storage.pool.size());
        element.length = columns;
        for (int column = 0; column < columns; ++column)
            m_storage.pool += QLatin1Char(static_cast<char>(alignments[column]));
    }

    static std::uint8_t boxOf(cmark_node* item)
    {
        if (std::string_view(cmark_node_get_type_string(item)) != "tasklist")
            return noBox;
        return cmark_gfm_extensions_get_tasklist_item_checked(item) ? checkedBox : uncheckedBox;
    }

    RawMarkupStorage m_storage;
    std::vector<std::uint32_t> m_open;
    QStringDecoder m_decoder { QStringDecoder::Utf8,
        QStringDecoder::Flag::Stateless | QStringDecoder::Flag::ConvertInitialBom };
};

}

RawMarkupStorage convertTree(cmark_node* root, std::size_t sourceSize)
{
    return Converter(sourceSize).convert(root);
}

}
