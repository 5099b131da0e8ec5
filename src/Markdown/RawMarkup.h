#pragma once

#include <QString>

#include <cstdint>
#include <vector>

namespace Quillory::Markup {

// The kinds of element that a document can hold.
enum class RawMarkupKind : std::uint8_t {
    document,
    blockQuote,
    orderedList,
    unorderedList,
    listItem,
    codeBlock,
    htmlBlock,
    customBlock,
    paragraph,
    heading,
    thematicBreak,
    text,
    softBreak,
    lineBreak,
    inlineCode,
    inlineHTML,
    customInline,
    emphasis,
    strong,
    strikethrough,
    link,
    image,
    inlineAttributes,
    table,
    tableHead,
    tableBody,
    tableRow,
    tableCell,
};

// One element of the raw tree. The tree is flat: elements stand in document order, each before all that lies in it,
// and `end` is the position after the last of those. So nothing that walks, compares or frees a tree recurses,
// however deeply its quotes are nested.
struct RawMarkup {
    RawMarkupKind kind = RawMarkupKind::document;
    std::uint8_t number = 0;     // heading: level; list item: see ListItemBox; text: unused
    std::uint32_t start = 0;     // ordered list: first number; table cell: column span and row span, 16 bits each
    std::uint32_t end = 0;       // position after the last element of this subtree
    std::uint32_t offset = 0;    // of the string in the pool, in UTF-16 units
    std::uint32_t length = 0;
    std::uint32_t second = 0;    // length of a second string, which stands right after the first: language or title
};

enum ListItemBox : std::uint8_t { noBox, uncheckedBox, checkedBox };

// The data of a document: its elements, the root first, and one pool for all their strings.
struct RawMarkupStorage {
    std::vector<RawMarkup> elements;
    QString pool;
};

}
