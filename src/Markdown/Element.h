#pragma once

#include "Markdown/Checkbox.h"
#include "Markdown/RawMarkup.h"

#include <QString>
#include <QStringView>

#include <optional>
#include <variant>
#include <vector>

namespace Quillory::Markup {

// What an element is, with the payload of its kind. String views live as long as the document.
struct DocumentRoot { };
struct BlockQuote { };
struct OrderedList {
    unsigned startIndex = 1;
};
struct UnorderedList { };
struct ListItem {
    std::optional<Checkbox> checkbox;
};
struct CodeBlock {
    QStringView code; // with the trailing line feed that the parser leaves
    std::optional<QStringView> language;
};
struct HTMLBlock {
    QStringView rawHTML;
};
struct CustomBlock { };
struct Paragraph { };
struct Heading {
    int level = 1;
};
struct ThematicBreak { };
struct Text {
    QStringView string;
};
struct SoftBreak { };
struct LineBreak { };
struct InlineCode {
    QStringView code;
};
struct InlineHTML {
    QStringView rawHTML;
};
struct CustomInline {
    QStringView string;
};
struct Emphasis { };
struct Strong { };
struct Strikethrough { };
struct Link {
    std::optional<QStringView> destination;
    std::optional<QStringView> title;
};
struct Image {
    std::optional<QStringView> source;
    std::optional<QStringView> title;
};
struct InlineAttributes {
    QStringView attributes;
};
struct Table {
    enum class ColumnAlignment { left, center, right };
    struct Head { };
    struct Body { };
    struct Row { };
    struct Cell {
        unsigned colspan = 1;
        unsigned rowspan = 1;
    };

    std::vector<std::optional<ColumnAlignment>> columnAlignments;
};

using RawMarkupData = std::variant<DocumentRoot, BlockQuote, OrderedList, UnorderedList, ListItem, CodeBlock, HTMLBlock,
    CustomBlock, Paragraph, Heading, ThematicBreak, Text, SoftBreak, LineBreak, InlineCode, InlineHTML, CustomInline,
    Emphasis, Strong, Strikethrough, Link, Image, InlineAttributes, Table, Table::Head, Table::Body, Table::Row,
    Table::Cell>;

class ElementChildren;

// One element of a document, seen in place. Cheap to copy; lives as long as the document.
class Element {
public:
    Element(RawMarkupStorage const& storage, std::uint32_t index)
        : m_storage(&storage)
        , m_index(index)
    {
    }

    RawMarkupKind kind() const { return raw().kind; }
    RawMarkupData data() const;

    ElementChildren children() const;
    qsizetype childCount() const;

    // The characters of an inline element or of a block of inline elements: code between backticks, breaks as a blank
    // or a line feed, marks dropped.
    QString plainText() const;

    RawMarkup const& raw() const { return m_storage->elements[m_index]; }
    QStringView string() const;
    QStringView secondString() const;
    std::uint32_t index() const { return m_index; }

private:
    RawMarkupStorage const* m_storage;
    std::uint32_t m_index;
};

// The children of an element, in document order.
class ElementChildren {
public:
    class Iterator {
    public:
        Iterator(RawMarkupStorage const& storage, std::uint32_t index)
            : m_storage(&storage)
            , m_index(index)
        {
        }
        Element operator*() const { return { *m_storage, m_index }; }
        Iterator& operator++()
        {
            m_index = m_storage->elements[m_index].end;
            return *this;
        }
        bool operator==(Iterator const& other) const { return m_index == other.m_index; }

    private:
        RawMarkupStorage const* m_storage;
        std::uint32_t m_index;
    };

    ElementChildren(RawMarkupStorage const& storage, std::uint32_t first, std::uint32_t end)
        : m_storage(&storage)
        , m_first(first)
        , m_end(end)
    {
    }

    Iterator begin() const { return { *m_storage, m_first }; }
    Iterator end() const { return { *m_storage, m_end }; }
    bool isEmpty() const { return m_first == m_end; }

private:
    RawMarkupStorage const* m_storage;
    std::uint32_t m_first;
    std::uint32_t m_end;
};

}
