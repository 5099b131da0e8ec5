#include "text/FoldedText.h"

#include "text/Scalars.h"
#include "text/SearchFolding.h"

#include <QTextBoundaryFinder>

#include <algorithm>
#include <limits>

namespace Quillory {

namespace {

constexpr qsizetype clusterUnits = 2'048; // looked at together

// Characters that never go on with the cluster before them: the letters and symbols that most texts are made of.
bool standsAlone(QChar character)
{
    auto const unit = character.unicode();
    auto const within = [unit](char16_t first, char16_t last) { return unit >= first && unit <= last; };
    return unit < 0x0300 || within(0x0370, 0x0482) || within(0x048A, 0x058F) || within(0x2010, 0x2027)
        || within(0x2190, 0x27BF) || within(0x3041, 0x3096) || within(0x30A1, 0x30FA) || within(0x4E00, 0x9FFF);
}

}

FoldedText::FoldedText(QString text)
    : m_text(std::move(text))
{
    m_folded.reserve(m_text.size());
}

void FoldedText::begin(Stretch::Kind kind, qsizetype source)
{
    if (kind == Stretch::Kind::aligned && !m_stretches.empty() && m_stretches.back().kind == kind)
        return;
    m_stretches.push_back({ static_cast<quint32>(m_folded.size()), static_cast<quint32>(source), kind });
}

void FoldedText::foldSome(qsizetype units)
{
    auto const end = units < m_text.size() - m_read ? m_read + units : m_text.size();
    while (m_read < end) {
        auto position = m_read;
        while (position < end && standsAlone(m_text[position]))
            ++position;
        auto const goesOn = position < m_text.size() && !standsAlone(m_text[position]);
        if (goesOn && position > m_read)
            --position; // the base of what follows
        foldAligned(position);
        if (!goesOn)
            continue;
        // A cluster that reaches the end of what is looked at is looked at again, further.
        for (auto reach = clusterUnits; m_read == position; reach *= 2) {
            auto last = position + 1;
            while (last < m_text.size() && last - position < reach && !standsAlone(m_text[last]))
                ++last;
            foldClusters(last);
        }
    }
    if (isComplete())
        m_folded.squeeze();
}

// ASCII, which most texts are made of, takes no call for each letter.
bool FoldedText::foldAscii(qsizetype end)
{
    auto const source = QStringView(m_text).sliced(m_read, end - m_read);
    auto const length = std::ranges::find_if(source, [](QChar unit) { return unit.unicode() >= 0x80; })
        - source.begin();
    if (length == 0)
        return false;
    begin(Stretch::Kind::aligned, m_read);
    auto const before = m_folded.size();
    m_folded.resize(before + length);
    std::ranges::transform(source.first(length), m_folded.begin() + before, [](QChar unit) {
        auto const letter = unit.unicode();
        return QChar(letter >= u'A' && letter <= u'Z' ? static_cast<char16_t>(letter + 0x20) : letter);
    });
    m_read += length;
    return true;
}

void FoldedText::foldAligned(qsizetype end)
{
    while (m_read < end) {
        if (foldAscii(end))
            continue;
        auto const unit = m_text[m_read].unicode();
        auto const before = m_folded.size();
        begin(Stretch::Kind::aligned, m_read);
        appendFoldedForSearch(m_folded, unit);
        ++m_read;
        if (m_folded.size() - before != 1)
            m_stretches.push_back(
                { static_cast<quint32>(before), static_cast<quint32>(m_read - 1), Stretch::Kind::cluster });
    }
}

// The last cluster may go on after `end`: it is left for the next time.
void FoldedText::foldClusters(qsizetype end)
{
    auto const start = m_read;
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, m_text.sliced(start, end - start));
    auto const isWhole = end == m_text.size() || standsAlone(m_text[end]);
    for (auto next = finder.toNextBoundary(); next >= 0; next = finder.toNextBoundary()) {
        if (!isWhole && start + next == end)
            return;
        foldCluster(start + next);
    }
}

void FoldedText::foldCluster(qsizetype end)
{
    auto const before = m_folded.size();
    auto const source = m_read;
    auto scalars = 0;
    forEachScalar(QStringView(m_text).sliced(source, end - source), [&](char32_t scalar) {
        appendFoldedForSearch(m_folded, scalar);
        ++scalars;
    });
    m_read = end;
    auto const isAligned = scalars == 1 && m_folded.size() - before == end - source;
    if (isAligned && !m_stretches.empty() && m_stretches.back().kind == Stretch::Kind::aligned)
        return;
    m_stretches.push_back({ static_cast<quint32>(before), static_cast<quint32>(source),
        isAligned ? Stretch::Kind::aligned : Stretch::Kind::cluster });
}

qsizetype FoldedText::sourceEnd(std::size_t stretch) const
{
    return stretch + 1 < m_stretches.size() ? static_cast<qsizetype>(m_stretches[stretch + 1].source) : m_text.size();
}

// A position inside a cluster is rounded to its end when what follows it is asked for, else to its start.
qsizetype FoldedText::foldedPosition(qsizetype source, Direction roundedTo) const
{
    if (source >= m_text.size() || m_stretches.empty())
        return m_folded.size();
    auto const after = std::ranges::upper_bound(m_stretches, static_cast<quint32>(source), {}, &Stretch::source);
    auto const index = static_cast<std::size_t>(std::distance(m_stretches.begin(), after)) - 1;
    auto const& stretch = m_stretches[index];
    auto const inside = source - static_cast<qsizetype>(stretch.source);
    if (stretch.kind == Stretch::Kind::aligned || inside == 0)
        return static_cast<qsizetype>(stretch.folded) + inside;
    if (roundedTo == Direction::backwards)
        return stretch.folded;
    return index + 1 < m_stretches.size() ? static_cast<qsizetype>(m_stretches[index + 1].folded) : m_folded.size();
}

TextRange FoldedText::original(qsizetype folded, qsizetype length) const
{
    // Clusters of marks alone have no folded form: of stretches that begin at the same place the last one holds it.
    auto const holding = [this](qsizetype position) {
        auto const after = std::ranges::upper_bound(m_stretches, static_cast<quint32>(position), {}, &Stretch::folded);
        return static_cast<std::size_t>(std::distance(m_stretches.begin(), after)) - 1;
    };
    auto const first = holding(folded);
    auto const last = holding(folded + length - 1);
    auto const place = [this](std::size_t stretch, qsizetype position) {
        return static_cast<qsizetype>(m_stretches[stretch].source) + position
            - static_cast<qsizetype>(m_stretches[stretch].folded);
    };
    auto const isCluster = [this](std::size_t stretch) { return m_stretches[stretch].kind == Stretch::Kind::cluster; };
    auto const start = isCluster(first) ? static_cast<qsizetype>(m_stretches[first].source) : place(first, folded);
    auto const end = isCluster(last) ? sourceEnd(last) : place(last, folded + length);
    return { start, end - start };
}

std::optional<TextRange> FoldedText::find(QString const& query, qsizetype from, qsizetype to, Direction direction)
{
    foldSome(std::numeric_limits<qsizetype>::max());
    auto const first = foldedPosition(from, Direction::forwards);
    auto const end = foldedPosition(to, Direction::backwards);
    if (query.isEmpty() || end - first < query.size())
        return {};
    auto const within = QStringView(m_folded).sliced(first, end - first);
    // Without a place to begin at, Qt 6.4 looks for a single character one after the end as well.
    auto const found = direction == Direction::forwards ? within.indexOf(query)
                                                        : within.lastIndexOf(query, within.size() - query.size());
    if (found < 0)
        return {};
    return original(first + found, query.size());
}

}
