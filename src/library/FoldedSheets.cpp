#include "library/FoldedSheets.h"

#include "library/ShortcutText.h"
#include "text/SearchBytes.h"

#include <QHash>

#include <algorithm>
#include <iterator>

namespace Quillory {

namespace {

// One text after the other, a line feed between them.
class Lines {
public:
    explicit Lines(QByteArray& bytes)
        : m_bytes(bytes)
    {
    }

    void add(QStringView text)
    {
        if (m_isBegun)
            m_bytes += '\n';
        m_isBegun = true;
        appendSearchBytes(m_bytes, text);
    }

    void add(ShortcutSheet const& sheet)
    {
        add(sheet.title);
        add(sheet.description.value_or(QString()));
        for (auto const& section : sheet.sections) {
            add(section.title);
            add(section.description.value_or(QString()));
            for (auto const& entry : section.entries)
                add(entry);
        }
    }

private:
    void add(ShortcutSheet::Entry const& entry)
    {
        add(entry.title);
        add(entry.text.value_or(QString()));
        for (auto const& shortcut : entry.shortcuts) {
            add(ShortcutText::shown(shortcut, KeyNames::symbols));
            add(ShortcutText::shown(shortcut, KeyNames::words));
            add(ShortcutText::spoken(shortcut, KeyNames::symbols));
        }
    }

    QByteArray& m_bytes;
    bool m_isBegun = false;
};

// Markdown is searched as it was written.
void appendSearchBytes(QByteArray& bytes, Sheet const& sheet)
{
    Lines lines(bytes);
    lines.add(sheet.title);
    lines.add(sheet.id);
    if (sheet.shortcuts)
        lines.add(*sheet.shortcuts);
    else
        lines.add(sheet.source);
}

bool haveSameTexts(Sheet const& a, Sheet const& b)
{
    auto const same = [](QString const& one, QString const& other) {
        return (one.isSharedWith(other) && one.size() == other.size()) || one == other;
    };
    return same(a.id, b.id) && same(a.title, b.title) && same(a.source, b.source) && a.shortcuts == b.shortcuts;
}

qsizetype charactersOf(QList<Sheet> const& sheets)
{
    return std::accumulate(sheets.cbegin(), sheets.cend(), qsizetype {}, [](qsizetype sum, Sheet const& sheet) {
        return sum + sheet.title.size() + sheet.id.size() + sheet.source.size() + 2;
    });
}

}

std::shared_ptr<FoldedSheets const> FoldedSheets::of(
    QList<Sheet> sheets, std::shared_ptr<FoldedSheets const> const& earlier, std::stop_token const& end)
{
    auto folded = std::make_shared<FoldedSheets>();
    if (earlier && std::ranges::equal(std::as_const(sheets), earlier->m_sheets, haveSameTexts)) {
        *folded = *earlier;
        folded->m_sheets = std::move(sheets);
        return folded;
    }
    QHash<QString, qsizetype> known;
    for (qsizetype sheet = 0; earlier && sheet < earlier->m_sheets.size(); ++sheet)
        known.insert(earlier->m_sheets.at(sheet).id, sheet);

    folded->m_bytes.reserve(charactersOf(sheets)); // most often all that it takes; memory that isn't used is not there
    folded->m_ends.reserve(static_cast<std::size_t>(sheets.size()));
    for (auto const& sheet : std::as_const(sheets)) {
        if (end.stop_requested())
            return nullptr;
        auto const before = known.value(sheet.id, -1);
        if (before >= 0 && haveSameTexts(earlier->m_sheets.at(before), sheet))
            folded->m_bytes += earlier->bytesOf(before);
        else
            appendSearchBytes(folded->m_bytes, sheet);
        folded->m_ends.push_back(folded->m_bytes.size());
    }
    folded->m_bytes.squeeze();
    folded->m_sheets = std::move(sheets);
    return folded;
}

FoldedSheets::Positions FoldedSheets::holding(QByteArrayView query) const
{
    Positions all(m_ends.size());
    std::ranges::generate(all, [place = qsizetype { 0 }]() mutable { return place++; });
    return holding(query, all);
}

FoldedSheets::Positions FoldedSheets::holding(QByteArrayView query, Positions const& among) const
{
    Positions found;
    std::ranges::copy_if(
        among, std::back_inserter(found), [&](qsizetype sheet) { return holdsSearchBytes(bytesOf(sheet), query); });
    return found;
}

qsizetype FoldedSheets::byteSize() const
{
    return m_bytes.capacity() + static_cast<qsizetype>(m_ends.capacity() * sizeof(qsizetype));
}

QByteArrayView FoldedSheets::bytesOf(qsizetype sheet) const
{
    auto const index = static_cast<std::size_t>(sheet);
    auto const start = index == 0 ? 0 : m_ends[index - 1];
    return QByteArrayView(m_bytes).sliced(start, m_ends[index] - start);
}

}
