#include "textlayout/TextUnits.h"

#include <QTextBoundaryFinder>

#include <algorithm>

namespace Quillory {

namespace {

constexpr qsizetype wordSearch = 1'024;
constexpr qsizetype clusterSearch = 64;

// Shaping a cluster costs the square of its marks, and setting up a paragraph that of its runs.
constexpr qsizetype longestCluster = 512;
constexpr std::size_t mostRuns = 512;

qsizetype afterLastBlank(QStringView string)
{
    for (auto end = string.size(); end > std::max<qsizetype>(string.size() - wordSearch, 0); --end) {
        if (string[end - 1].isSpace())
            return end;
    }
    return 0;
}

// The best place to cut a longer string, after at most `length` units.
qsizetype stretchOf(QStringView string, qsizetype length)
{
    if (auto const end = afterLastBlank(string.first(length)); end > 0)
        return end;
    // Between clusters; in one that goes on for longer than anybody could write, at least not between surrogates.
    auto const window = string.sliced(length - clusterSearch)
                            .first(std::min(2 * clusterSearch, string.size() - length + clusterSearch));
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, window.toString());
    finder.setPosition(clusterSearch);
    auto const inWindow = finder.isAtBoundary() ? clusterSearch : finder.toPreviousBoundary();
    if (inWindow > 0)
        return length - clusterSearch + inWindow;
    return string[length].isLowSurrogate() ? length - 1 : length;
}

bool hasEndlessCluster(QStringView paragraph)
{
    for (auto position = longestCluster; position + clusterSearch < paragraph.size(); position += longestCluster) {
        auto const window = paragraph.sliced(position, clusterSearch);
        if (std::ranges::all_of(window, [](QChar character) { return character.isMark() || character == u'\u200D'; }))
            return true;
    }
    return false;
}

// Hands out the paragraph runs in the order of growing locations.
class StyleCursor {
public:
    StyleCursor(AttributedText const& text, qsizetype location)
        : m_text(text)
        , m_run(
              text.isEmpty() ? 0 : static_cast<std::size_t>(text.paragraphRunAt(std::min(location, text.length() - 1))))
    {
    }

    std::optional<TableBlock> const& blockAt(qsizetype location)
    {
        auto const runs = m_text.paragraphRuns();
        while (m_run + 1 < runs.size() && runs[m_run + 1].location <= location)
            ++m_run;
        return m_text.paragraphStyle(runs[m_run]).block;
    }

    // The end of the table around a place that isn't its start; the place itself when there is none.
    qsizetype tableEndAround(qsizetype location)
    {
        if (!blockAt(location - 1))
            return location;
        auto const end = tableEnd(location - 1);
        return std::max(end, location);
    }

    // The end of the table that `location` lies in.
    qsizetype tableEnd(qsizetype location)
    {
        auto const runs = m_text.paragraphRuns();
        blockAt(location);
        auto const table = m_text.tableCell(runs[m_run]).table;
        auto end = location;
        for (; m_run < runs.size(); ++m_run) {
            auto const run = runs[m_run];
            if (!m_text.paragraphStyle(run).block || m_text.tableCell(run).table != table)
                break;
            end = run.end();
        }
        m_run = std::min(m_run, runs.size() - 1);
        return end;
    }

private:
    AttributedText const& m_text;
    std::size_t m_run;
};

// Adds where the further stretches of a paragraph begin.
void cutIntoStretches(AttributedText const& text, TextRange paragraph, std::vector<quint32>& starts)
{
    auto const string = QStringView(text.string()).sliced(paragraph.location, paragraph.length);
    auto const limit = hasEndlessCluster(string) ? longestCluster : longestStretch;
    auto const runs = text.runs();
    auto run = static_cast<std::size_t>(text.runAt(paragraph.location));
    for (qsizetype position = 0;;) {
        auto const rest = string.size() - position;
        while (run + 1 < runs.size() && runs[run + 1].location <= paragraph.location + position)
            ++run;
        auto most = rest > limit ? limit / 2 : rest;
        if (run + mostRuns < runs.size())
            most = std::min(
                most, std::max(runs[run + mostRuns].location - paragraph.location - position, clusterSearch));
        if (most >= rest)
            return;
        position += stretchOf(string.sliced(position), most);
        starts.push_back(static_cast<quint32>(paragraph.location + position));
    }
}

}

std::vector<quint32> chapterStarts(AttributedText const& text, qsizetype characters)
{
    std::vector<quint32> starts;
    StyleCursor styles(text, 0);
    for (qsizetype position = 0; position < text.length();) {
        starts.push_back(static_cast<quint32>(position));
        auto const feed = text.string().indexOf(u'\n', position + characters - 1);
        position = feed < 0 ? text.length() : styles.tableEndAround(feed + 1);
    }
    starts.push_back(static_cast<quint32>(text.length()));
    return starts;
}

std::vector<quint32> textUnitStarts(AttributedText const& text, TextRange range, TableUnits tables)
{
    std::vector<quint32> starts;
    auto const string = QStringView(text.string());
    StyleCursor styles(text, range.location);
    auto position = range.location;
    while (position < range.end()) {
        starts.push_back(static_cast<quint32>(position));
        if (tables == TableUnits::whole && styles.blockAt(position)) {
            position = std::min(styles.tableEnd(position), range.end());
            continue;
        }
        auto const feed = string.indexOf(u'\n', position);
        auto const end = feed < 0 ? range.end() : std::min(feed + 1, range.end());
        if (end - position > longestCluster)
            cutIntoStretches(text, { position, end - position }, starts);
        position = end;
    }
    starts.push_back(static_cast<quint32>(range.end()));
    return starts;
}

}
