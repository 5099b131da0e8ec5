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
    m_shown = {};
    dropTables();
}

// One pass over units and runs.
void TextFlow::estimate()
{
    auto const& text = m_context.text();
    auto const count = static_cast<qsizetype>(m_starts.size()) - 1;
    std::vector<HeightStack::Extent> heights(static_cast<std::size_t>(count));
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
                heights[index].height = estimatedTableHeight(unit);
            continue;
        }
        auto const estimate = estimatedParagraph(m_context, stretch(unit), runs[run], style, m_widths.of(style));
        heights[index] = { estimate.height, estimate.exact };
    }
    m_heights = HeightStack(heights);
    // Their columns need no measuring, and a single row may be all there is.
    for (auto const unit : fixedTables)
        noteHeight(unit, table(unit));
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
    auto const after = std::upper_bound(m_starts.begin(), m_starts.end() - 1, location,
        [](qsizetype position, quint32 start) { return position < static_cast<qsizetype>(start); });
    return std::max<qsizetype>(std::distance(m_starts.begin(), after) - 1, 0);
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
    if (!m_heights.isExact(unit))
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
    if (m_heights.isExact(unit))
        layout->makeSomeExact(QDeadlineTimer(QDeadlineTimer::Forever));
    m_widestTable = std::max(m_widestTable, layout->width());
    m_heights.set(unit, { layout->height(), false });
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
    m_heights.set(unit, { lines->height(), true });
    return lines;
}

void TextFlow::noteHeight(qsizetype unit, TableLayout const& table)
{
    m_heights.set(unit, { table.height(), table.isExact() });
}

void TextFlow::layOutUnit(qsizetype unit, double top, double bottom)
{
    if (!isTable(unit)) {
        layOutParagraph(unit);
        return;
    }
    auto& layout = table(unit);
    layout.layOut(top, bottom);
    noteHeight(unit, layout);
}

void TextFlow::layOut(double top, double bottom)
{
    if (unitCount() == 0)
        return;
    m_shown = m_heights.layOut(top, bottom, [&](qsizetype unit, double y) { layOutUnit(unit, top - y, bottom - y); });
    m_lines.erase(m_lines.begin(), m_lines.lower_bound(m_shown.first));
    m_lines.erase(m_lines.lower_bound(m_shown.end), m_lines.end());
    dropTables();
}

void TextFlow::dropTables()
{
    std::erase_if(
        m_tableLayouts, [this](auto const& made) { return !m_shown.contains(made.first) && made.second->isShort(); });
    for (auto const& [unit, layout] : m_tableLayouts) {
        if (!m_shown.contains(unit))
            layout->forgetLines();
    }
}

bool TextFlow::makeSomeExact(QDeadlineTimer const& deadline)
{
    return m_heights.makeSomeExact(deadline, [&](qsizetype unit) {
        if (!isTable(unit)) {
            m_heights.set(unit, { paragraph(unit)->height(), true });
            return false;
        }
        auto& layout = table(unit);
        auto const more = layout.makeSomeExact(deadline);
        noteHeight(unit, layout);
        if (!more && !m_shown.contains(unit) && layout.isShort())
            m_tableLayouts.erase(unit);
        return more;
    });
}

TextAnchor TextFlow::anchorAt(double y)
{
    if (unitCount() == 0)
        return { m_range.location, y };
    auto const place = m_heights.placeAt(y);
    if (isTable(place.index)) {
        auto& layout = table(place.index);
        auto const anchor = layout.anchorAt(m_heights.offsetOf(place));
        noteHeight(place.index, layout);
        return anchor;
    }
    auto const lines = layOutParagraph(place.index);
    auto const offset = m_heights.offsetOf(place);
    auto const& line = lines->lineAt(offset);
    return { line.location, offset - line.top };
}

double TextFlow::positionOf(TextAnchor const& anchor)
{
    if (unitCount() == 0)
        return anchor.offset;
    auto const unit = unitHolding(anchor.location);
    auto const top = m_heights.top(unit);
    if (isTable(unit)) {
        auto& layout = table(unit);
        auto const position = layout.positionOf(anchor);
        noteHeight(unit, layout);
        return top + position;
    }
    return top + layOutParagraph(unit)->lineHolding(anchor.location).top + anchor.offset;
}

void TextFlow::paint(QPainter& painter, QPointF topLeft, QRectF const& clip)
{
    if (unitCount() == 0)
        return;
    auto const first = unitAt(clip.top() - topLeft.y());
    m_heights.forEach(first, topLeft.y(), clip.bottom(), [&](qsizetype unit, double y) {
        if (!isTable(unit))
            keptParagraph(unit)->paint(painter, { topLeft.x(), y }, clip);
        else if (auto* layout = tableIfMade(unit))
            layout->paint(painter, { topLeft.x(), y }, clip);
        return true;
    });
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
    // The units between are not worth laying out: lines of several units are taken to fill the width.
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
    auto const first = std::max(unitAt(clip.top() - topLeft.y()), unitHolding(range.location));
    m_heights.forEach(first, topLeft.y(), clip.bottom(), [&](qsizetype unit, double y) {
        if (unitRange(unit).location >= range.end())
            return false;
        if (!isTable(unit))
            paragraph(unit)->addSelection(covered, range, { topLeft.x(), y }, clip);
        else if (auto const* layout = tableIfMade(unit))
            layout->addSelection(covered, range, { topLeft.x(), y }, clip);
        return true;
    });
}

}
