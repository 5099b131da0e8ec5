#include "rendering/ParsedMarkdown.h"

#include "Markdown/Document.h"

#include <algorithm>
#include <vector>

namespace Quillory {

// Makes the records in one pass over a document's elements. Both trees are in document order, so an element's record
// ends where the record of the element after its subtree begins.
class ParsedMarkdownBuilder {
public:
    explicit ParsedMarkdownBuilder(Markup::Document const& document)
        : m_document(document)
        , m_storage(std::make_shared<Built>())
    {
    }

    static std::shared_ptr<ParsedMarkdown::Storage const> asCode(QString const& text)
    {
        auto const length = static_cast<std::uint32_t>(text.size());
        return storageOf(std::make_shared<Built>(
            Built { { { .kind = Kind::codeBlock, .end = 1, .length = length } }, text, false }));
    }

    std::shared_ptr<ParsedMarkdown::Storage const> build()
    {
        auto const count = static_cast<std::uint32_t>(m_document.elements().size());
        m_storage->records.reserve(count);
        m_storage->pool.reserve(m_document.poolSize());
        for (std::uint32_t index = 1; index < count;) {
            closeUpTo(index);
            index = convert(m_document.element(index));
        }
        closeUpTo(count);
        m_storage->pool.squeeze();
        m_storage->records.shrink_to_fit();
        return storageOf(std::move(m_storage));
    }

private:
    using Kind = ParsedMarkdown::Kind;
    using enum ParsedMarkdown::Flag;
    using Element = Markup::Element;
    struct Built {
        std::vector<ParsedMarkdown::Record> records;
        QString pool;
        bool namesImages = false;
    };
    struct OpenRecord {
        std::uint32_t record;
        std::uint32_t elementEnd;
    };

    static std::shared_ptr<ParsedMarkdown::Storage const> storageOf(std::shared_ptr<Built> built)
    {
        auto& of = *built;
        return std::make_shared<ParsedMarkdown::Storage const>(
            ParsedMarkdown::Storage { of.records, of.pool, of.namesImages, std::move(built) });
    }

    void closeUpTo(std::uint32_t element)
    {
        while (!m_open.empty() && m_open.back().elementEnd <= element) {
            m_storage->records[m_open.back().record].end = static_cast<std::uint32_t>(m_storage->records.size());
            m_open.pop_back();
        }
    }

    // Converts the element and says which comes next: its first child, or what follows it.
    std::uint32_t convert(Element element)
    {
        using Raw = Markup::RawMarkupKind;
        switch (element.kind()) {
        case Raw::text:
            return leaf(element, Kind::text, element.string());
        case Raw::inlineCode:
            return leaf(element, Kind::inlineCode, element.string());
        case Raw::codeBlock:
            return leaf(element, Kind::codeBlock, element.string());
        case Raw::heading:
            return open(element, { .kind = Kind::heading, .level = element.raw().number }, element.plainText());
        case Raw::paragraph:
            return open(element, { .kind = Kind::paragraph });
        case Raw::strong:
            return open(element, { .kind = Kind::strong });
        case Raw::emphasis:
            return open(element, { .kind = Kind::emphasis });
        case Raw::strikethrough:
            return open(element, { .kind = Kind::strikethrough });
        case Raw::link:
            return open(element, { .kind = Kind::link, .flags = presence(element) }, element.string());
        case Raw::image:
            return image(element);
        case Raw::listItem:
            return open(element, { .kind = Kind::listItem, .flags = boxFlags(element) });
        case Raw::blockQuote:
            return open(element, { .kind = Kind::blockQuote });
        case Raw::table:
            return open(element, { .kind = Kind::table });
        case Raw::tableBody:
            return element.index() + 1; // its rows follow the head's
        case Raw::tableHead:
        case Raw::tableRow:
            return open(element, { .flags = isRow });
        case Raw::tableCell:
            return open(element, { .flags = isCell });
        case Raw::softBreak:
        case Raw::lineBreak:
            return leaf(element, Kind::lineBreak, {});
        case Raw::thematicBreak:
            return leaf(element, Kind::thematicBreak, {});
        case Raw::inlineHTML:
            return leaf(element, Kind::html, element.string());
        case Raw::htmlBlock:
            leaf(element, Kind::html, element.string());
            m_storage->records.back().flags = isBlock;
            return element.raw().end;
        default:
            return open(element, { .kind = Kind::container });
        }
    }

    std::uint32_t open(Element element, ParsedMarkdown::Record record, QStringView string = {})
    {
        m_open.push_back({ static_cast<std::uint32_t>(m_storage->records.size()), element.raw().end });
        m_storage->records.push_back(record);
        setString(string);
        return element.index() + 1;
    }

    std::uint32_t leaf(Element element, Kind kind, QStringView string)
    {
        m_storage->records.push_back(
            { .kind = kind, .end = static_cast<std::uint32_t>(m_storage->records.size()) + 1 });
        setString(string);
        return element.raw().end;
    }

    std::uint32_t image(Element element)
    {
        auto const description = element.plainText();
        leaf(element, Kind::image, element.string());
        m_storage->records.back().flags = presence(element);
        m_storage->records.back().second = static_cast<std::uint32_t>(description.size());
        m_storage->pool += description;
        m_storage->namesImages = true;
        return element.raw().end;
    }

    void setString(QStringView string)
    {
        auto& record = m_storage->records.back();
        record.offset = static_cast<std::uint32_t>(m_storage->pool.size());
        record.length = static_cast<std::uint32_t>(string.size());
        m_storage->pool += string;
    }

    static std::uint8_t presence(Element element) { return element.string().isEmpty() ? noFlag : hasString; }

    static std::uint8_t boxFlags(Element element)
    {
        switch (element.raw().number) {
        case Markup::checkedBox:
            return hasBox | isChecked;
        case Markup::uncheckedBox:
            return hasBox;
        default:
            return noFlag;
        }
    }

    Markup::Document const& m_document;
    std::shared_ptr<Built> m_storage;
    std::vector<OpenRecord> m_open;
};

ParsedMarkdown::ParsedMarkdown()
{
    static auto const empty = std::make_shared<Storage const>();
    m_storage = empty;
}

ParsedMarkdown::ParsedMarkdown(std::shared_ptr<Storage const> storage)
    : m_storage(std::move(storage))
{
}

ParsedMarkdown::ParsedMarkdown(Markup::Document const& document)
    : ParsedMarkdown(ParsedMarkdownBuilder(document).build())
{
}

ParsedMarkdown ParsedMarkdown::parsing(QString const& source)
{
    return ParsedMarkdown(Markup::Document::parsing(source));
}

ParsedMarkdown ParsedMarkdown::parsingUtf8(QByteArrayView utf8)
{
    return ParsedMarkdown(Markup::Document::parsingUtf8(utf8));
}

ParsedMarkdown ParsedMarkdown::asCode(QString const& text)
{
    return ParsedMarkdown(ParsedMarkdownBuilder::asCode(text));
}

ParsedMarkdown::Nodes ParsedMarkdown::nodes() const
{
    return { *m_storage, 0, static_cast<std::uint32_t>(m_storage->records.size()) };
}

std::optional<QString> ParsedMarkdown::firstHeadingTitle() const
{
    if (m_storage->records.empty())
        return std::nullopt;
    auto const& first = m_storage->records.front();
    if (first.kind != Kind::heading || first.level != 1)
        return std::nullopt;
    return m_storage->string(first).toString();
}

QSet<QString> ParsedMarkdown::imageSources() const
{
    QSet<QString> sources;
    if (!m_storage->namesImages)
        return sources;
    for (auto const& record : m_storage->records) {
        if (record.kind == Kind::image && (record.flags & hasString))
            sources.insert(m_storage->string(record).toString());
    }
    return sources;
}

qsizetype ParsedMarkdown::nodeCount() const
{
    return std::ranges::count_if(
        m_storage->records, [](Record const& record) { return (record.flags & (isRow | isCell)) == 0; });
}

qsizetype ParsedMarkdown::stringsLength() const
{
    return m_storage->pool.size();
}

std::size_t ParsedMarkdown::byteSize() const
{
    return sizeof(Storage) + m_storage->records.size_bytes()
        + static_cast<std::size_t>(m_storage->pool.size()) * sizeof(QChar);
}

bool ParsedMarkdown::operator==(ParsedMarkdown const& other) const
{
    // Both halves follow from the tree alone, so equal trees are equal in both.
    return m_storage == other.m_storage
        || (std::ranges::equal(m_storage->records, other.m_storage->records)
            && m_storage->pool == other.m_storage->pool);
}

ParsedMarkdown::Value ParsedMarkdown::Node::value() const
{
    return visit([](auto const& payload) { return Value(payload); });
}

}
