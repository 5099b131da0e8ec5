#pragma once

#include <QByteArrayView>
#include <QSet>
#include <QString>
#include <QStringView>

#include <cstdint>
#include <memory>
#include <optional>
#include <variant>
#include <vector>

namespace Quillory {

namespace Markup {
class Document;
}

// What the program knows of a Markdown sheet's content: a tree of seventeen kinds of node. An immutable value, cheap
// to copy, readable on any thread.
//
// The tree is flat: nodes stand in document order, each before all that lies in it, with one pool for their strings.
// So a tree of any depth is walked, compared and freed without recursion, and frees in a few calls.
class ParsedMarkdown {
public:
    enum class Kind : std::uint8_t {
        text,
        inlineCode,
        codeBlock,
        heading,
        paragraph,
        strong,
        emphasis,
        strikethrough,
        link,
        image,
        listItem,
        blockQuote,
        table,
        html,
        container,
        lineBreak,
        thematicBreak,
    };

    class Node;

    // Neighbours in the tree: the children of a node, the rows of a table, the cells of a row.
    template<typename Element>
    class Siblings;
    using Nodes = Siblings<Node>;
    struct Cell;
    struct Row;

    // The kinds with their payloads. String views live as long as the tree.
    struct Text;
    struct InlineCode;
    struct CodeBlock;
    struct Heading;
    struct Paragraph;
    struct Strong;
    struct Emphasis;
    struct Strikethrough;
    struct Link;
    struct Image;
    struct ListItem;
    struct BlockQuote;
    struct Table;
    struct Html;
    struct Container;
    struct LineBreak;
    struct ThematicBreak;
    using Value = std::variant<Text, InlineCode, CodeBlock, Heading, Paragraph, Strong, Emphasis, Strikethrough, Link,
        Image, ListItem, BlockQuote, Table, Html, Container, LineBreak, ThematicBreak>;

    // Without nodes.
    ParsedMarkdown();

    // The tree of a text. Any text yields one.
    static ParsedMarkdown parsing(QString const& source);
    static ParsedMarkdown parsingUtf8(QByteArrayView utf8);
    explicit ParsedMarkdown(Markup::Document const& document);

    // The top-level blocks.
    Nodes nodes() const;

    // The text of the heading that is the document's title: the first block, and of level 1.
    std::optional<QString> firstHeadingTitle() const;

    // All sources of images anywhere in the tree.
    QSet<QString> imageSources() const;

    // How many nodes there are and how many bytes the tree holds in memory.
    qsizetype nodeCount() const;
    std::size_t byteSize() const;

    bool operator==(ParsedMarkdown const& other) const;

private:
    friend class ParsedMarkdownBuilder;
    struct Record;
    struct Storage;

    explicit ParsedMarkdown(std::shared_ptr<Storage const> storage);

    std::shared_ptr<Storage const> m_storage;
};

// One node, seen in place. Lives as long as its tree.
class ParsedMarkdown::Node {
public:
    Kind kind() const;
    Value value() const;

    // The children of the kinds that have some; none for the others and for a table.
    Nodes children() const;

private:
    friend class ParsedMarkdown;
    template<typename>
    friend class Siblings;
    Node(Storage const& storage, std::uint32_t index)
        : m_storage(&storage)
        , m_index(index)
    {
    }

    Record const& record() const;

    Storage const* m_storage;
    std::uint32_t m_index;
};

template<typename Element>
class ParsedMarkdown::Siblings {
public:
    class Iterator {
    public:
        using difference_type = std::ptrdiff_t;
        using value_type = Element;

        Iterator() = default;
        Iterator(Storage const& storage, std::uint32_t index)
            : m_storage(&storage)
            , m_index(index)
        {
        }
        Element operator*() const;
        Iterator& operator++();
        Iterator operator++(int)
        {
            auto const before = *this;
            ++*this;
            return before;
        }
        bool operator==(Iterator const& other) const { return m_index == other.m_index; }

    private:
        Storage const* m_storage = nullptr;
        std::uint32_t m_index = 0;
    };

    Siblings(Storage const& storage, std::uint32_t first, std::uint32_t end)
        : m_storage(&storage)
        , m_first(first)
        , m_end(end)
    {
    }

    Iterator begin() const { return Iterator(*m_storage, m_first); }
    Iterator end() const { return Iterator(*m_storage, m_end); }
    bool isEmpty() const { return m_first == m_end; }

private:
    Storage const* m_storage;
    std::uint32_t m_first;
    std::uint32_t m_end;
};

struct ParsedMarkdown::Cell {
    Nodes nodes;
};
struct ParsedMarkdown::Row {
    Siblings<Cell> cells;
};
struct ParsedMarkdown::Text {
    QStringView string;
};
struct ParsedMarkdown::InlineCode {
    QStringView string;
};
struct ParsedMarkdown::CodeBlock {
    QStringView string;
};
struct ParsedMarkdown::Heading {
    int level;
    QStringView text;
    Nodes children;
};
struct ParsedMarkdown::Paragraph {
    Nodes children;
};
struct ParsedMarkdown::Strong {
    Nodes children;
};
struct ParsedMarkdown::Emphasis {
    Nodes children;
};
struct ParsedMarkdown::Strikethrough {
    Nodes children;
};
struct ParsedMarkdown::Link {
    std::optional<QStringView> destination;
    Nodes children;
};
struct ParsedMarkdown::Image {
    std::optional<QStringView> source;
    QStringView description;
};
struct ParsedMarkdown::ListItem {
    std::optional<bool> checked;
    Nodes children;
};
struct ParsedMarkdown::BlockQuote {
    Nodes children;
};
struct ParsedMarkdown::Table {
    Siblings<Row> rows;
};
struct ParsedMarkdown::Html {
    QStringView string;
    bool block;
};
struct ParsedMarkdown::Container {
    Nodes children;
};
struct ParsedMarkdown::LineBreak { };
struct ParsedMarkdown::ThematicBreak { };

}
