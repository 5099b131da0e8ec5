#pragma once

#include "platform/SealedBytes.h"

#include <QByteArrayView>
#include <QSet>
#include <QString>
#include <QStringView>

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <type_traits>
#include <variant>

namespace Quillory {

namespace Markup {
class Document;
}

// The content of a Markdown sheet: a tree of seventeen kinds of node. An immutable value, cheap
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

    // One block of code that holds the whole text: what stands for a text that could not be parsed. Shares the text.
    static ParsedMarkdown asCode(QString const& text);

    // The tree as bytes, for another process of the same program; and the tree that such bytes are, which are taken as
    // they lie and not copied. They may come from anybody: absent for bytes that no tree would give.
    void write(ByteSink const& sink) const;
    static std::optional<ParsedMarkdown> adopting(SealedBytes const& bytes);

    // The top-level blocks.
    Nodes nodes() const;

    // The text of the heading that is the document's title: the first block, and of level 1.
    std::optional<QString> firstHeadingTitle() const;

    // All sources of images anywhere in the tree.
    QSet<QString> imageSources() const;

    // How many nodes there are, how long all their strings are together in UTF-16 units, and how many bytes the tree takes.
    qsizetype nodeCount() const;
    qsizetype stringsLength() const;
    std::size_t byteSize() const;

    bool operator==(ParsedMarkdown const& other) const;

private:
    friend class ParsedMarkdownBuilder;
    friend class ParsedMarkdownCheck;

    // Properties of a record beyond its kind. Rows and cells of a table are records too, of no kind of their own.
    enum Flag : std::uint8_t {
        noFlag = 0,
        hasString = 1, // link: a destination; image: a source
        isBlock = 2, // html
        hasBox = 4, // list item
        isChecked = 8,
        isRow = 16,
        isCell = 32,
    };

    struct Record {
        Kind kind = Kind::container;
        std::uint8_t flags = noFlag;
        std::uint8_t level = 0; // heading
        std::uint8_t unused = 0;
        std::uint32_t end = 0; // position after the last record of this subtree
        std::uint32_t offset = 0; // of the string in the pool, UTF-16 units
        std::uint32_t length = 0;
        std::uint32_t second = 0; // image: length of the description, right after the source

        bool operator==(Record const&) const = default;
    };
    static_assert(std::has_unique_object_representations_v<Record>, "records go to other processes as they are");

    struct Storage {
        std::span<Record const> records;
        QStringView pool;
        bool namesImages = false; // spares most trees the walk for them
        std::shared_ptr<void const> owner; // of records and pool

        QStringView string(Record const& record) const { return pool.sliced(record.offset, record.length); }
        QStringView secondString(Record const& record) const
        {
            return pool.sliced(record.offset + record.length, record.second);
        }
    };

    explicit ParsedMarkdown(std::shared_ptr<Storage const> storage);

    std::shared_ptr<Storage const> m_storage;
};

// One node, seen in place. Lives as long as its tree.
class ParsedMarkdown::Node {
public:
    Kind kind() const { return record().kind; }
    Value value() const;

    // Calls `visitor` with the payload of the node's kind, as std::visit would with its value, but makes none.
    template<typename Visitor>
    decltype(auto) visit(Visitor&& visitor) const;

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

    Record const& record() const { return m_storage->records[m_index]; }

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

template<typename Element>
inline typename ParsedMarkdown::Siblings<Element>::Iterator& ParsedMarkdown::Siblings<Element>::Iterator::operator++()
{
    m_index = m_storage->records[m_index].end;
    return *this;
}

template<>
inline ParsedMarkdown::Node ParsedMarkdown::Siblings<ParsedMarkdown::Node>::Iterator::operator*() const
{
    return { *m_storage, m_index };
}

template<>
inline ParsedMarkdown::Cell ParsedMarkdown::Siblings<ParsedMarkdown::Cell>::Iterator::operator*() const
{
    return { Nodes(*m_storage, m_index + 1, m_storage->records[m_index].end) };
}

template<>
inline ParsedMarkdown::Row ParsedMarkdown::Siblings<ParsedMarkdown::Row>::Iterator::operator*() const
{
    return { Siblings<Cell>(*m_storage, m_index + 1, m_storage->records[m_index].end) };
}

inline ParsedMarkdown::Nodes ParsedMarkdown::Node::children() const
{
    auto const hasChildren = kind() != Kind::table;
    return { *m_storage, hasChildren ? m_index + 1 : record().end, record().end };
}

template<typename Visitor>
decltype(auto) ParsedMarkdown::Node::visit(Visitor&& visitor) const
{
    auto const& record = this->record();
    auto const string = m_storage->string(record);
    auto const optionalString = record.flags & hasString ? std::optional(string) : std::nullopt;
    switch (record.kind) {
    case Kind::text:
        return visitor(Text { string });
    case Kind::inlineCode:
        return visitor(InlineCode { string });
    case Kind::codeBlock:
        return visitor(CodeBlock { string });
    case Kind::heading:
        return visitor(Heading { record.level, string, children() });
    case Kind::paragraph:
        return visitor(Paragraph { children() });
    case Kind::strong:
        return visitor(Strong { children() });
    case Kind::emphasis:
        return visitor(Emphasis { children() });
    case Kind::strikethrough:
        return visitor(Strikethrough { children() });
    case Kind::link:
        return visitor(Link { optionalString, children() });
    case Kind::image:
        return visitor(Image { optionalString, m_storage->secondString(record) });
    case Kind::listItem:
        return visitor(ListItem {
            record.flags & hasBox ? std::optional((record.flags & isChecked) != 0) : std::nullopt, children() });
    case Kind::blockQuote:
        return visitor(BlockQuote { children() });
    case Kind::table:
        return visitor(Table { Siblings<Row>(*m_storage, m_index + 1, record.end) });
    case Kind::html:
        return visitor(Html { string, (record.flags & isBlock) != 0 });
    case Kind::container:
        return visitor(Container { children() });
    case Kind::lineBreak:
        return visitor(LineBreak {});
    case Kind::thematicBreak:
        return visitor(ThematicBreak {});
    }
    Q_UNREACHABLE();
}

}
