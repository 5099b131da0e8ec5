#include "Markdown/PaddedTables.h"

#include <algorithm>
#include <optional>
#include <string_view>

namespace Quillory::Markup {

namespace {

bool isBlankByte(char byte)
{
    return byte == ' ' || byte == '\t' || byte == '\v' || byte == '\f' || byte == '\r';
}

// The line without what quotes and indentation put before a row of a table. Empty for the lines that end a table;
// a line of other blanks, such as vertical tabs, is a row.
std::string_view contentOf(std::string_view line)
{
    return line.substr(std::min(line.size(), line.find_first_not_of(" \t>")));
}

// The cells of a row: a pipe ends one unless a backslash stands before it; those at both ends are optional.
qsizetype cellCount(std::string_view row)
{
    if (row.starts_with('|'))
        row.remove_prefix(1);
    qsizetype cells = 0;
    bool isOpen = false;
    char previous = 0;
    for (char const byte : row) {
        if (byte == '|' && previous != '\\') {
            ++cells;
            isOpen = false;
        } else if (!isBlankByte(byte)) {
            isOpen = true;
        }
        previous = byte;
    }
    return cells + (isOpen ? 1 : 0);
}

// The columns of a row of dashes, absent for anything else.
std::optional<qsizetype> delimiterColumns(std::string_view content)
{
    bool const isDelimiter = std::ranges::all_of(
        content, [](char byte) { return byte == '|' || byte == '-' || byte == ':' || isBlankByte(byte); });
    if (!isDelimiter || !content.contains('-'))
        return std::nullopt;
    return cellCount(content);
}

// Takes the lines off a text, one after the other.
class Lines {
public:
    explicit Lines(std::string_view text)
        : m_rest(text)
        , m_hasReturns(text.contains('\r'))
    {
    }

    bool atEnd() const { return m_rest.empty(); }

    std::string_view next()
    {
        auto const line = m_rest.substr(0, m_hasReturns ? m_rest.find_first_of("\r\n") : m_rest.find('\n'));
        m_rest.remove_prefix(line.size());
        auto const isCrLf = m_rest.starts_with("\r\n");
        m_rest.remove_prefix(std::min<std::size_t>(m_rest.size(), isCrLf ? 2 : 1));
        return line;
    }

private:
    std::string_view m_rest;
    bool m_hasReturns;
};

}

qsizetype paddedCellBound(QByteArrayView utf8)
{
    // Every table of the stretch between two blank lines is taken to go on to the stretch's end, and the widest of
    // them to hold each row.
    qsizetype bound = 0;
    qsizetype columns = 0;
    std::string_view previous;
    for (Lines lines(std::string_view(utf8.data(), static_cast<std::size_t>(utf8.size()))); !lines.atEnd();) {
        auto const content = contentOf(lines.next());
        if (content.empty()) {
            columns = 0;
            previous = {};
            continue;
        }
        if (columns > 0)
            bound += std::max<qsizetype>(0, columns - cellCount(content));
        if (auto const delimiters = delimiterColumns(content); delimiters && *delimiters > columns) {
            // Before the head, a list marker can look like one more cell, and a ">" that is text can hide one.
            auto const headCells = cellCount(previous);
            if (headCells >= *delimiters - 1 && headCells <= *delimiters + 1)
                columns = *delimiters;
        }
        previous = content;
    }
    return bound;
}

}
