#include "Markdown/Element.h"

namespace Quillory::Markup {

namespace {

std::optional<QStringView> unlessEmpty(QStringView text)
{
    return text.isEmpty() ? std::nullopt : std::optional(text);
}

std::optional<Checkbox> checkboxOf(std::uint8_t box)
{
    switch (box) {
    case checkedBox:
        return Checkbox::checked;
    case uncheckedBox:
        return Checkbox::unchecked;
    default:
        return std::nullopt;
    }
}

std::vector<std::optional<Table::ColumnAlignment>> alignmentsOf(QStringView bytes)
{
    std::vector<std::optional<Table::ColumnAlignment>> alignments;
    alignments.reserve(static_cast<std::size_t>(bytes.size()));
    for (QChar const byte : bytes) {
        switch (byte.unicode()) {
        case u'l':
            alignments.emplace_back(Table::ColumnAlignment::left);
            break;
        case u'c':
            alignments.emplace_back(Table::ColumnAlignment::center);
            break;
        case u'r':
            alignments.emplace_back(Table::ColumnAlignment::right);
            break;
        default:
            alignments.emplace_back(std::nullopt);
        }
    }
    return alignments;
}

}

QStringView Element::string() const
{
    return QStringView(m_storage->pool).sliced(raw().offset, raw().length);
}

QStringView Element::secondString() const
{
    return QStringView(m_storage->pool).sliced(raw().offset + raw().length, raw().second);
}

ElementChildren Element::children() const
{
    return { *m_storage, m_index + 1, raw().end };
}

qsizetype Element::childCount() const
{
    qsizetype count = 0;
    for (auto child = m_index + 1; child < raw().end; child = m_storage->elements[child].end)
        ++count;
    return count;
}

RawMarkupData Element::data() const
{
    switch (kind()) {
    case RawMarkupKind::document:
        return DocumentRoot {};
    case RawMarkupKind::blockQuote:
        return BlockQuote {};
    case RawMarkupKind::orderedList:
        return OrderedList { raw().start };
    case RawMarkupKind::unorderedList:
        return UnorderedList {};
    case RawMarkupKind::listItem:
        return ListItem { checkboxOf(raw().number) };
    case RawMarkupKind::codeBlock:
        return CodeBlock { string(), unlessEmpty(secondString()) };
    case RawMarkupKind::htmlBlock:
        return HTMLBlock { string() };
    case RawMarkupKind::customBlock:
        return CustomBlock {};
    case RawMarkupKind::paragraph:
        return Paragraph {};
    case RawMarkupKind::heading:
        return Heading { raw().number };
    case RawMarkupKind::thematicBreak:
        return ThematicBreak {};
    case RawMarkupKind::text:
        return Text { string() };
    case RawMarkupKind::softBreak:
        return SoftBreak {};
    case RawMarkupKind::lineBreak:
        return LineBreak {};
    case RawMarkupKind::inlineCode:
        return InlineCode { string() };
    case RawMarkupKind::inlineHTML:
        return InlineHTML { string() };
    case RawMarkupKind::customInline:
        return CustomInline { string() };
    case RawMarkupKind::emphasis:
        return Emphasis {};
    case RawMarkupKind::strong:
        return Strong {};
    case RawMarkupKind::strikethrough:
        return Strikethrough {};
    case RawMarkupKind::link:
        return Link { unlessEmpty(string()), unlessEmpty(secondString()) };
    case RawMarkupKind::image:
        return Image { unlessEmpty(string()), unlessEmpty(secondString()) };
    case RawMarkupKind::inlineAttributes:
        return InlineAttributes { string() };
    case RawMarkupKind::table:
        return Table { alignmentsOf(string()) };
    case RawMarkupKind::tableHead:
        return Table::Head {};
    case RawMarkupKind::tableBody:
        return Table::Body {};
    case RawMarkupKind::tableRow:
        return Table::Row {};
    case RawMarkupKind::tableCell:
        return Table::Cell { raw().start & 0xFFFFU, raw().start >> 16U };
    }
    Q_UNREACHABLE();
}

QString Element::plainText() const
{
    QString plain;
    for (auto index = m_index; index < raw().end; ++index) {
        Element const element(*m_storage, index);
        switch (element.kind()) {
        case RawMarkupKind::text:
        case RawMarkupKind::inlineHTML:
        case RawMarkupKind::customInline:
            plain += element.string();
            break;
        case RawMarkupKind::inlineCode:
            plain += u'`';
            plain += element.string();
            plain += u'`';
            break;
        case RawMarkupKind::softBreak:
            plain += u' ';
            break;
        case RawMarkupKind::lineBreak:
            plain += u'\n';
            break;
        default:
            break; // a container: its children follow
        }
    }
    return plain;
}

}
