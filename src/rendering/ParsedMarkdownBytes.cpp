// A tree as bytes: a header, the records, the strings, as they lie in memory. Only a process of the same program reads
// them.

#include "rendering/ParsedMarkdown.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <vector>

namespace Quillory {

namespace {

struct Header {
    std::uint32_t recordCount = 0;
    std::uint32_t poolLength = 0; // UTF-16 units
};

// May be vectorized: nearly every text has none.
bool hasSurrogates(QStringView text)
{
    auto const* const units = text.utf16();
    unsigned found = 0;
    for (qsizetype index = 0; index < text.size(); ++index)
        found |= static_cast<unsigned>((units[index] & 0xF800U) == 0xD800U);
    return found != 0;
}

}

// Whether records and strings are such as a builder makes. Readers of a tree rely on all of it: that subtrees are nested,
// that tables hold rows, and rows as many cells as the others, and that every unit of the pool belongs to one string
// alone, or a small file would stand for an endless text.
class ParsedMarkdownCheck {
public:
    explicit ParsedMarkdownCheck(ParsedMarkdown::Storage const& storage)
        : m_storage(storage)
        , m_hasSurrogates(hasSurrogates(storage.pool))
    {
    }

    bool passes()
    {
        for (std::uint32_t index = 0; index < m_storage.records.size(); ++index) {
            if (!closeUpTo(index) || !passes(index, m_storage.records[index]))
                return false;
        }
        return closeUpTo(static_cast<std::uint32_t>(m_storage.records.size()))
            && m_poolEnd == static_cast<std::uint64_t>(m_storage.pool.size());
    }

    bool namesImages() const { return m_namesImages; }

private:
    using Kind = ParsedMarkdown::Kind;
    using Record = ParsedMarkdown::Record;
    using enum ParsedMarkdown::Flag;
    enum class Place : std::uint8_t { block, table, row };
    struct Open {
        std::uint32_t end;
        Place place;
        std::uint32_t cells = 0; // of a row until now, or of each row of a table, once one has ended
    };

    // False when a row ends that is not as long as those before it.
    bool closeUpTo(std::uint32_t index)
    {
        while (!m_open.empty() && m_open.back().end <= index) {
            auto const closed = m_open.back();
            m_open.pop_back();
            if (closed.place != Place::row)
                continue;
            auto& table = m_open.back();
            if (table.cells != 0 && table.cells != closed.cells)
                return false;
            table.cells = closed.cells;
        }
        return true;
    }

    bool passes(std::uint32_t index, Record const& record)
    {
        auto const end = m_open.empty() ? m_storage.records.size() : m_open.back().end;
        if (record.kind > Kind::thematicBreak || record.end <= index || record.end > end || record.unused != 0)
            return false;
        if (!standsWhereItMay(record) || !hasItsFlags(record) || !hasItsStrings(record))
            return false;
        m_namesImages = m_namesImages || record.kind == Kind::image;
        if (isLeaf(record.kind))
            return record.end == index + 1;
        if (record.flags == isCell)
            ++m_open.back().cells;
        if (record.end > index + 1)
            m_open.push_back({ record.end, placeIn(record) });
        else if (placeIn(record) != Place::block)
            return false; // a table without rows, or a row without cells
        return true;
    }

    bool standsWhereItMay(Record const& record) const
    {
        switch (m_open.empty() ? Place::block : m_open.back().place) {
        case Place::table:
            return record.flags == isRow;
        case Place::row:
            return record.flags == isCell;
        case Place::block:
            return record.flags != isRow && record.flags != isCell;
        }
        return false;
    }

    static Place placeIn(Record const& record)
    {
        if (record.kind == Kind::table)
            return Place::table;
        return (record.flags & isRow) != 0 ? Place::row : Place::block;
    }

    static bool hasItsFlags(Record const& record)
    {
        auto const flags = record.flags;
        if (record.kind == Kind::heading ? record.level < 1 || record.level > 6 : record.level != 0)
            return false;
        switch (record.kind) {
        case Kind::link:
        case Kind::image:
            return flags == (record.length > 0 ? hasString : noFlag);
        case Kind::html:
            return flags == noFlag || flags == isBlock;
        case Kind::listItem:
            return flags == noFlag || flags == hasBox || flags == (hasBox | isChecked);
        case Kind::container:
            return flags == noFlag || flags == isRow || flags == isCell;
        default:
            return flags == noFlag;
        }
    }

    static bool isLeaf(Kind kind)
    {
        constexpr std::array leaves { Kind::text, Kind::inlineCode, Kind::codeBlock, Kind::image, Kind::html,
            Kind::lineBreak, Kind::thematicBreak };
        return std::ranges::find(leaves, kind) != leaves.end();
    }

    bool hasItsStrings(Record const& record)
    {
        constexpr std::array withString { Kind::text, Kind::inlineCode, Kind::codeBlock, Kind::heading, Kind::link,
            Kind::image, Kind::html };
        if (record.length > 0 && std::ranges::find(withString, record.kind) == withString.end())
            return false;
        if (record.second > 0 && record.kind != Kind::image)
            return false;
        auto const end = m_poolEnd + record.length + record.second;
        if (record.offset != m_poolEnd || end > static_cast<std::uint64_t>(m_storage.pool.size()))
            return false;
        m_poolEnd = end;
        return !m_hasSurrogates
            || (m_storage.string(record).isValidUtf16() && m_storage.secondString(record).isValidUtf16());
    }

    ParsedMarkdown::Storage const& m_storage;
    bool m_hasSurrogates;
    bool m_namesImages = false;
    std::uint64_t m_poolEnd = 0;
    std::vector<Open> m_open;
};

void ParsedMarkdown::write(ByteSink const& sink) const
{
    Header const header { static_cast<std::uint32_t>(m_storage->records.size()),
        static_cast<std::uint32_t>(m_storage->pool.size()) };
    sink(std::as_bytes(std::span(&header, 1)));
    sink(std::as_bytes(m_storage->records));
    sink(std::as_bytes(std::span(m_storage->pool.utf16(), static_cast<std::size_t>(m_storage->pool.size()))));
}

std::optional<ParsedMarkdown> ParsedMarkdown::adopting(SealedBytes const& sealed)
{
    auto const bytes = sealed.bytes();
    if (bytes.size() < sizeof(Header) || reinterpret_cast<std::uintptr_t>(bytes.data()) % alignof(Record) != 0)
        return std::nullopt;
    Header header;
    std::memcpy(&header, bytes.data(), sizeof header);
    auto const recordBytes = std::uint64_t { header.recordCount } * sizeof(Record);
    if (bytes.size() - sizeof header != recordBytes + std::uint64_t { header.poolLength } * sizeof(QChar))
        return std::nullopt;

    auto const* const records = bytes.data() + sizeof header;
    Storage storage { { reinterpret_cast<Record const*>(records), header.recordCount },
        { reinterpret_cast<char16_t const*>(records + recordBytes), static_cast<qsizetype>(header.poolLength) }, false,
        sealed.owner() };
    ParsedMarkdownCheck check(storage);
    if (!check.passes())
        return std::nullopt;
    storage.namesImages = check.namesImages();
    return ParsedMarkdown(std::make_shared<Storage const>(std::move(storage)));
}

}
