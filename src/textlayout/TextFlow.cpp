#include "textlayout/TextFlow.h"

#include "textlayout/ParagraphEstimate.h"
#include "textlayout/TableLayout.h"
#include "textlayout/TextUnits.h"

#include <QPainter>

#include <algorithm>

namespace Quillory {

TextFlow::TextFlow(LayoutContext const& context, TextRange range, TextWidths const& widths, Tables tables)
    : m_context(context)
    , m_range(range)
    , m_widths(widths)
    , m_tables(tables)
    , m_starts(textUnitStarts(context.text(), range, tables == Tables::asGrids ? TableUnits::whole : TableUnits::none))
{
    estimate();
}

TextFlow::~TextFlow() = default;

void TextFlow::setWidths(TextWidths const& widths)
{
    if (widths == m_widths)
        return;
    m_widths = widths;
    m_lines.clear();
    m_widestTable = 0;
    estimate(); // tables follow when they are next asked for
}

void TextFlow::forgetLines()
{
    m_lines.clear();
    for (auto const& [unit, layout] : m_tableLayouts)
        layout->forgetLines();
}

void TextFlow::leave()
{
    m_lines.clear();
    m_firstShown = m_behindShown = 0;
    dropTables();
}

// One pass over units and runs.
void TextFlow::estimate()
{
    auto const& text = m_context.text();
    auto const count = static_cast<qsizetype>(m_starts.size()) - 1;
    std::vector<double> heights(static_cast<std::size_t>(count));
    m_exact.assign(heights.size(), false);
    m_inexact = count;
    m_nextInexact = 0;

    auto const runs = text.runs();
    auto const styles = text.paragraphRuns();
    auto run = count > 0 ? static_cast<std::size_t>(text.runAt(m_range.location)) : 0;
    auto styleRun = count > 0 ? static_cast<std::size_t>(text.paragraphRunAt(m_range.location)) : 0;
    std::vector<qsizetype> fixedTables;
    for (qsizetype unit = 0; unit < count; ++unit) {
        auto const index = static_cast<std::size_t>(unit);
        auto const start = static_cast<qsizetype>(m_starts[index]);
        while (run + 1 < runs.size() && runs[run + 1].location <= start)
            ++run;
        while (styleRun + 1 < styles.size() && styles[styleRun + 1].location <= start)
            ++styleRun;
        auto const& style = text.paragraphStyle(styles[styleRun]);
        if (m_tables == Tables::asGrids && style.block) {
            if (style.block->widths == TableBlock::Widths::fixed)
                fixedTables.push_back(unit);
            else
                heights[index] = estimatedTableHeight(unit);
            continue;
        }
        auto const estimate = estimatedParagraph(m_context, stretch(unit), runs[run], style, m_widths.of(style));
        heights[index] = estimate.height;
        m_exact[index] = estimate.exact;
        m_inexact -= estimate.exact ? 1 : 0;
    }
    m_heights = HeightTree(std::move(heights));
    // Their columns need no measuring, and a single row may be all there is.
    for (auto const unit : fixedTables) {
        auto const& layout = table(unit);
        setExact(unit, layout.height(), layout.isExact());
    }
}

double TextFlow::estimatedTableHeight(qsizetype unit) const
{
    auto const& text = m_context.text();
    auto const range = unitRange(unit);
    auto const lastRun = text.paragraphRuns()[static_cast<std::size_t>(text.paragraphRunAt(range.end() - 1))];
    auto const& block = *text.paragraphStyle(lastRun).block;
    auto const& metrics = m_context.metrics(text.runs()[static_cast<std::size_t>(text.runAt(range.location))]);
    auto const rows = text.tableCell(lastRun).row + 1;
    return rows * (metrics.lineHeight + 2 * block.padding + block.borderWidth) + block.borderWidth;
}

TextRange TextFlow::unitRange(qsizetype unit) const
{
    auto const index = static_cast<std::size_t>(unit);
    return { m_starts[index], static_cast<qsizetype>(m_starts[index + 1]) - m_starts[index] };
}

bool TextFlow::isTable(qsizetype unit) const
{
    if (m_tables == Tables::asParagraphs)
        return false;
    auto const& text = m_context.text();
    auto const run = text.paragraphRunAt(unitRange(unit).location);
    return text.paragraphStyle(text.paragraphRuns()[static_cast<std::size_t>(run)]).block.has_value();
}

qsizetype TextFlow::unitHolding(qsizetype location) const
{
    auto const behind = std::upper_bound(m_starts.begin(), m_starts.end() - 1, location,
        [](qsizetype position, quint32 start) { return position < static_cast<qsizetype>(start); });
    return std::max<qsizetype>(std::distance(m_starts.begin(), behind) - 1, 0);
}

ParagraphStretch TextFlow::stretch(qsizetype unit) const
{
    auto const& string = m_context.text().string();
    auto range = unitRange(unit);
    ParagraphStretch result { range, range.location == 0 || string[range.location - 1] == u'\n', true };
    if (range.length > 0 && string[range.end() - 1] == u'\n')
        --result.range.length;
    else
        result.endsParagraph = range.end() == string.size();
    return result;
}

TextFlow::Paragraph TextFlow::paragraph(qsizetype unit) const
{
    auto const known = m_lines.find(unit);
    return known != m_lines.end() ? known->second
                                  : std::make_shared<ParagraphLayout const>(m_context, stretch(unit), m_widths);
}

TableLayout* TextFlow::tableIfMade(qsizetype unit) const
{
    auto const known = m_tableLayouts.find(unit);
    return known == m_tableLayouts.end() || known->second->availableWidth() != m_widths.visible ? nullptr
                                                                                                : known->second.get();
}

std::shared_ptr<TableLayout const> TextFlow::tableToRead(qsizetype unit) const
{
    if (auto const* made = tableIfMade(unit))
        return { std::shared_ptr<void>(), made };
    if (!m_exact[static_cast<std::size_t>(unit)])
        return nullptr;
    auto layout = std::make_shared<TableLayout>(m_context, unitRange(unit), m_widths.visible);
    layout->makeSomeExact(QDeadlineTimer(QDeadlineTimer::Forever));
    return layout;
}

TableLayout& TextFlow::table(qsizetype unit)
{
    auto& layout = m_tableLayouts[unit];
    if (layout && layout->availableWidth() == m_widths.visible)
        return *layout;
    if (layout)
        layout->setAvailableWidth(m_widths.visible);
    else
        layout = std::make_unique<TableLayout>(m_context, unitRange(unit), m_widths.visible);
    if (m_exact[static_cast<std::size_t>(unit)])
        layout->makeSomeExact(QDeadlineTimer(QDeadlineTimer::Forever));
    m_widestTable = std::max(m_widestTable, layout->width());
    m_heights.set(unit, layout->height());
    return *layout;
}

TextFlow::Paragraph TextFlow::keptParagraph(qsizetype unit)
{
    auto& lines = m_lines[unit];
    if (!lines)
        lines = std::make_shared<ParagraphLayout const>(m_context, stretch(unit), m_widths);
    return lines;
}

TextFlow::Paragraph TextFlow::layOutParagraph(qsizetype unit)
{
    auto lines = keptParagraph(unit);
    setExact(unit, lines->height(), true);
    return lines;
}

void TextFlow::setExact(qsizetype unit, double height, bool exact)
{
    auto const index = static_cast<std::size_t>(unit);
    if (exact && !m_exact[index])
        --m_inexact;
    m_exact[index] = m_exact[index] || exact;
    m_heights.set(unit, height);
}

void TextFlow::layOutUnit(qsizetype unit, double top, double bottom)
{
    if (!isTable(unit)) {
        layOutParagraph(unit);
        return;
    }
    auto& layout = table(unit);
    layout.layOut(top, bottom);
    setExact(unit, layout.height(), layout.isExact());
}

void TextFlow::layOut(double top, double bottom)
{
    if (unitCount() == 0)
        return;
    auto const first = unitAt(top);
    auto unit = first;
    for (auto y = m_heights.top(first); unit < unitCount() && (y < bottom || unit == first); ++unit) {
        layOutUnit(unit, top - y, bottom - y);
        y += m_heights.height(unit);
    }
    m_lines.erase(m_lines.begin(), m_lines.lower_bound(first));
    m_lines.erase(m_lines.lower_bound(unit), m_lines.end());
    m_firstShown = first;
    m_behindShown = unit;
    dropTables();
}

void TextFlow::dropTables()
{
    std::erase_if(m_tableLayouts, [this](auto const& made) { return !isShown(made.first) && made.second->isShort(); });
    for (auto const& [unit, layout] : m_tableLayouts) {
        if (!isShown(unit))
            layout->forgetLines();
    }
}

bool TextFlow::makeSomeExact(QDeadlineTimer const& deadline)
{
    for (; m_nextInexact < unitCount(); ++m_nextInexact) {
        auto const unit = m_nextInexact;
        if (m_exact[static_cast<std::size_t>(unit)])
            continue;
        if (isTable(unit)) {
            auto& layout = table(unit);
            auto const more = layout.makeSomeExact(deadline);
            setExact(unit, layout.height(), layout.isExact());
            if (more)
                return true;
            if (!isShown(unit) && layout.isShort())
                m_tableLayouts.erase(unit);
        } else {
            setExact(unit, paragraph(unit)->height(), true);
        }
        if (deadline.hasExpired())
            return m_inexact > 0;
    }
    return false;
}

TextAnchor TextFlow::anchorAt(double y)
{
    if (unitCount() == 0)
        return { m_range.location, y };
    auto const unit = unitAt(y);
    auto const top = m_heights.top(unit);
    auto const estimated = m_heights.height(unit);
    // What was a place in an estimate is the same share of what it really comes to.
    auto const local = [&] {
        auto const height = m_heights.height(unit);
        return height == estimated || y <= top || estimated <= 0 ? y - top : (y - top) * height / estimated;
    };
    if (isTable(unit)) {
        table(unit);
        auto const anchor = tableIfMade(unit)->anchorAt(local());
        setExact(unit, tableIfMade(unit)->height(), tableIfMade(unit)->isExact());
        return anchor;
    }
    auto const lines = layOutParagraph(unit);
    auto const& line = lines->lineAt(local());
    return { line.location, local() - line.top };
}

double TextFlow::positionOf(TextAnchor const& anchor)
{
    if (unitCount() == 0)
        return anchor.offset;
    auto const unit = unitHolding(anchor.location);
    auto const top = m_heights.top(unit);
    if (isTable(unit)) {
        auto const position = table(unit).positionOf(anchor);
        setExact(unit, table(unit).height(), table(unit).isExact());
        return top + position;
    }
    return top + layOutParagraph(unit)->lineHolding(anchor.location).top + anchor.offset;
}

void TextFlow::paint(QPainter& painter, QPointF topLeft, QRectF const& clip)
{
    if (unitCount() == 0)
        return;
    auto unit = unitAt(clip.top() - topLeft.y());
    for (auto y = topLeft.y() + m_heights.top(unit); unit < unitCount() && y < clip.bottom(); ++unit) {
        auto const height = m_heights.height(unit);
        if (!isTable(unit))
            keptParagraph(unit)->paint(painter, { topLeft.x(), y }, clip);
        else if (auto* layout = tableIfMade(unit))
            layout->paint(painter, { topLeft.x(), y }, clip);
        y += height;
    }
}

qsizetype TextFlow::characterIndexAt(QPointF point) const
{
    if (unitCount() == 0)
        return m_range.location;
    auto const unit = unitAt(point.y());
    QPointF const local(point.x(), point.y() - m_heights.top(unit));
    if (!isTable(unit))
        return paragraph(unit)->characterIndexAt(local);
    auto const layout = tableToRead(unit);
    return layout ? layout->characterIndexAt(local) : unitRange(unit).location;
}

QRectF TextFlow::boundingRect(TextRange range) const
{
    if (unitCount() == 0)
        return {};
    auto const rectIn = [&](qsizetype unit) {
        auto const top = m_heights.top(unit);
        if (!isTable(unit))
            return paragraph(unit)->boundingRect(range).translated(0, top);
        auto const layout = tableToRead(unit);
        return layout ? layout->boundingRect(range).translated(0, top)
                      : QRectF(0, top, m_widths.visible, m_heights.height(unit));
    };
    auto const first = unitHolding(range.location);
    auto const last = unitHolding(std::max(range.location, range.end() - 1));
    if (first == last)
        return rectIn(first);
    // What lies between is not worth laying out: lines of several units are taken to fill the width.
    auto const above = rectIn(first);
    auto const below = rectIn(last);
    return { 0, above.top(), std::max({ m_widths.visible, above.right(), below.right() }),
        below.bottom() - above.top() };
}

TextRange TextFlow::lineRange(qsizetype location) const
{
    if (unitCount() == 0)
        return { m_range.location, 0 };
    auto const unit = unitHolding(location);
    if (!isTable(unit))
        return paragraph(unit)->lineRange(location);
    auto const layout = tableToRead(unit);
    return layout ? layout->lineRange(location) : unitRange(unit);
}

void TextFlow::addSelection(std::vector<QRectF>& covered, TextRange range, QPointF topLeft, QRectF const& clip) const
{
    if (unitCount() == 0 || range.length == 0)
        return;
    auto unit = std::max(unitAt(clip.top() - topLeft.y()), unitHolding(range.location));
    for (auto y = topLeft.y() + m_heights.top(unit); unit < unitCount() && y < clip.bottom(); ++unit) {
        if (unitRange(unit).location >= range.end())
            break;
        if (!isTable(unit))
            paragraph(unit)->addSelection(covered, range, { topLeft.x(), y }, clip);
        else if (auto const* layout = tableIfMade(unit))
            layout->addSelection(covered, range, { topLeft.x(), y }, clip);
        y += m_heights.height(unit);
    }
}

}
