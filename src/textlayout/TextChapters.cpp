#include "textlayout/TextChapters.h"

#include "textlayout/ParagraphEstimate.h"
#include "textlayout/TextUnits.h"

#include <algorithm>
#include <cmath>

namespace Quillory {

namespace {

// Looking at that many characters takes well under a millisecond.
constexpr qsizetype charactersOfChapter = 8'192;

}

TextChapters::TextChapters(LayoutContext const& context, TextWidths const& widths)
    : m_context(context)
    , m_widths(widths)
    , m_starts(chapterStarts(context.text(), charactersOfChapter))
    , m_flows(m_starts.size() - 1)
{
    estimate();
}

TextChapters::~TextChapters() = default;

void TextChapters::setWidths(TextWidths const& widths)
{
    if (widths == m_widths)
        return;
    m_widths = widths;
    estimate(); // chapters follow when they are next asked for
}

void TextChapters::estimate()
{
    std::vector<HeightStack::Extent> heights(m_flows.size());
    for (std::size_t chapter = 0; chapter < heights.size(); ++chapter)
        heights[chapter].height = estimatedHeight(range(static_cast<qsizetype>(chapter)));
    m_heights = HeightStack(heights);
    // A short text need not wait for anything.
    if (count() == 1)
        opened(0);
}

// As if all of it looked like the character in its middle.
double TextChapters::estimatedHeight(TextRange range) const
{
    auto const& text = m_context.text();
    auto const middle = range.location + range.length / 2;
    auto const& metrics = m_context.metrics(text.runs()[static_cast<std::size_t>(text.runAt(middle))]);
    auto const styled = text.paragraphRuns()[static_cast<std::size_t>(text.paragraphRunAt(middle))];
    auto const width = m_widths.of(text.paragraphStyle(styled));
    auto const lines = estimatedLines(
        QStringView(text.string()).sliced(range.location, range.length), width / metrics.averageWidth);
    return lines * metrics.lineHeight;
}

TextRange TextChapters::range(qsizetype chapter) const
{
    auto const index = static_cast<std::size_t>(chapter);
    return { m_starts[index], static_cast<qsizetype>(m_starts[index + 1]) - m_starts[index] };
}

qsizetype TextChapters::chapterHolding(qsizetype location) const
{
    auto const after = std::ranges::upper_bound(
        m_starts.begin(), m_starts.end() - 1, static_cast<quint32>(std::max<qsizetype>(location, 0)));
    return std::max<qsizetype>(std::distance(m_starts.begin(), after) - 1, 0);
}

TextFlow& TextChapters::flow(qsizetype chapter) const
{
    auto& flow = m_flows[static_cast<std::size_t>(chapter)];
    if (flow)
        flow->setWidths(m_widths);
    else
        flow = std::make_unique<TextFlow>(m_context, range(chapter), m_widths, TextFlow::Tables::asGrids);
    return *flow;
}

TextFlow& TextChapters::opened(qsizetype chapter)
{
    auto& flow = this->flow(chapter);
    noteHeight(chapter);
    return flow;
}

void TextChapters::noteHeight(qsizetype chapter)
{
    auto const& flow = *m_flows[static_cast<std::size_t>(chapter)];
    m_heights.set(chapter, { flow.height(), flow.isExact() });
}

double TextChapters::usedWidth() const
{
    auto widest = m_widths.visible;
    for (auto const& flow : m_flows) {
        if (flow && flow->widths() == m_widths)
            widest = std::max(widest, flow->usedWidth());
    }
    return widest;
}

void TextChapters::forgetLines()
{
    for (auto const& flow : m_flows) {
        if (flow)
            flow->forgetLines();
    }
}

void TextChapters::layOut(double top, double bottom)
{
    if (count() == 0)
        return;
    auto const shown = m_heights.layOut(top, bottom, [&](qsizetype chapter, double y) {
        flow(chapter).layOut(top - y, bottom - y);
        noteHeight(chapter);
    });
    for (auto chapter = m_shown.first; chapter < m_shown.end; ++chapter) {
        if (!shown.contains(chapter))
            flow(chapter).leave();
    }
    m_shown = shown;
}

bool TextChapters::makeSomeExact(QDeadlineTimer const& deadline)
{
    return m_heights.makeSomeExact(deadline, [&](qsizetype chapter) {
        auto const more = opened(chapter).makeSomeExact(deadline);
        noteHeight(chapter);
        return more;
    });
}

TextAnchor TextChapters::anchorAt(double y)
{
    if (count() == 0)
        return { 0, y };
    auto const place = m_heights.placeAt(y);
    auto const anchor = opened(place.index).anchorAt(m_heights.offsetOf(place));
    noteHeight(place.index);
    return anchor;
}

double TextChapters::positionOf(TextAnchor const& anchor)
{
    if (count() == 0)
        return anchor.offset;
    auto const chapter = chapterHolding(anchor.location);
    auto const position = flow(chapter).positionOf(anchor);
    noteHeight(chapter);
    return m_heights.top(chapter) + position;
}

TextRange TextChapters::textRangeFor(double y0, double y1) const
{
    if (count() == 0)
        return {};
    auto const unitAt = [this](double y) {
        auto const chapter = m_heights.indexAt(y);
        return flow(chapter).unitRange(flow(chapter).unitAt(y - m_heights.top(chapter)));
    };
    auto const start = unitAt(y0).location;
    return { start, unitAt(y1).end() - start };
}

void TextChapters::paint(QPainter& painter, QRectF const& clip)
{
    if (count() == 0)
        return;
    m_heights.forEach(m_heights.indexAt(clip.top()), 0, clip.bottom(), [&](qsizetype chapter, double y) {
        flow(chapter).paint(painter, { 0, y }, clip);
        return true;
    });
}

qsizetype TextChapters::characterIndexAt(QPointF point) const
{
    if (count() == 0)
        return 0;
    auto const chapter = m_heights.indexAt(point.y());
    return flow(chapter).characterIndexAt(point - QPointF(0, m_heights.top(chapter)));
}

QRectF TextChapters::boundingRect(TextRange range) const
{
    if (count() == 0)
        return {};
    auto const first = chapterHolding(range.location);
    auto const last = chapterHolding(std::max(range.location, range.end() - 1));
    auto const above = flow(first).boundingRect(range).translated(0, m_heights.top(first));
    if (first == last)
        return above;
    auto const below = flow(last).boundingRect(range).translated(0, m_heights.top(last));
    return { 0, above.top(), std::max({ m_widths.visible, above.right(), below.right() }),
        below.bottom() - above.top() };
}

TextRange TextChapters::lineRange(qsizetype location) const
{
    return count() == 0 ? TextRange {} : flow(chapterHolding(location)).lineRange(location);
}

void TextChapters::addSelection(std::vector<QRectF>& covered, TextRange range, QRectF const& clip) const
{
    if (count() == 0)
        return;
    auto const first = std::max(m_heights.indexAt(clip.top()), chapterHolding(range.location));
    m_heights.forEach(first, 0, clip.bottom(), [&](qsizetype chapter, double y) {
        if (this->range(chapter).location >= range.end())
            return false;
        flow(chapter).addSelection(covered, range, { 0, y }, clip);
        return true;
    });
}

}
