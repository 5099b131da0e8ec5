#include "textlayout/TableLayout.h"

#include "textlayout/ColumnDemands.h"

#include <algorithm>

namespace Quillory {

namespace {

constexpr std::size_t cellsOfShortTable = 64;
constexpr quint32 charactersOfShortTable = 2'048;

// A cell of more paragraphs keeps its flow once made: its heights take too long to be measured again.
constexpr qsizetype manyParagraphs = 64;

}

TableLayout::TableLayout(LayoutContext const& context, TextRange range, double availableWidth)
    : m_context(context)
    , m_availableWidth(availableWidth)
{
    readCells(range);
    measureColumns();
    arrange();
}

bool TableLayout::isShort() const
{
    return m_cells.size() <= cellsOfShortTable
        && m_cells.back().start - m_cells.front().start <= charactersOfShortTable;
}

void TableLayout::setAvailableWidth(double width)
{
    if (width == m_availableWidth)
        return;
    m_availableWidth = width;
    arrange();
}

void TableLayout::readCells(TextRange range)
{
    auto const& text = m_context.text();
    auto const runs = text.paragraphRuns();
    m_isFixed = text.paragraphStyle(runs[static_cast<std::size_t>(text.paragraphRunAt(range.location))]).block->widths
        == TableBlock::Widths::fixed;
    auto previousRow = -1;
    auto columns = 0;
    for (auto run = static_cast<std::size_t>(text.paragraphRunAt(range.location)); run < runs.size(); ++run) {
        if (runs[run].location >= range.end())
            break;
        auto const& block = *text.paragraphStyle(runs[run]).block;
        auto const cell = text.tableCell(runs[run]);
        m_border = std::max(m_border, block.borderWidth);
        if (block.border == TableBlock::Border::allEdges)
            m_rowBorder = std::max(m_rowBorder, block.borderWidth);
        columns = std::max({ columns, block.columns, cell.column + 1 });
        if (cell.row == previousRow && cell.column == m_cells.back().column)
            continue;
        if (cell.row != previousRow)
            m_rowStarts.push_back(m_cells.size());
        previousRow = cell.row;
        m_cells.push_back({ static_cast<quint32>(std::max(runs[run].location, range.location)), cell.column });
    }
    m_rowStarts.push_back(m_cells.size());
    m_cells.push_back({ static_cast<quint32>(range.end()), 0 });
    m_demands.resize(static_cast<std::size_t>(columns));
}

void TableLayout::measureColumns()
{
    if (m_isFixed)
        return;
    auto const& text = m_context.text();
    auto const styles = text.paragraphRuns();
    auto style = static_cast<std::size_t>(text.paragraphRunAt(m_cells.front().start));
    std::vector<CellToMeasure> cells;
    cells.reserve(m_cells.size() - 1);
    for (std::size_t cell = 0; cell + 1 < m_cells.size(); ++cell) {
        auto const range = cellRange(cell);
        while (style + 1 < styles.size() && styles[style + 1].location <= range.location)
            ++style;
        cells.push_back({ range, m_cells[cell].column, text.paragraphStyle(styles[style]).block->padding });
    }
    m_demands = columnDemands(m_context, cells, m_demands.size());
}

void TableLayout::arrange()
{
    m_rows.clear();
    auto const columns = m_demands.size();
    m_columnEdges.assign(1, 0);
    if (m_isFixed) {
        for (std::size_t column = 0; column < columns; ++column)
            m_columnEdges.push_back(m_columnEdges.back() + fixedWidth(column));
        return estimateRows();
    }
    auto const widths = fittedColumnWidths(m_demands, m_availableWidth - static_cast<double>(columns + 1) * m_border);
    for (auto const width : widths)
        m_columnEdges.push_back(m_columnEdges.back() + m_border + width);

    estimateRows();
}

// Every column of a fixed table has a cell in the first row.
double TableLayout::fixedWidth(std::size_t column) const
{
    return block(column).widthPercent / 100 * m_availableWidth;
}

void TableLayout::estimateRows()
{
    auto const& text = m_context.text();
    auto const runs = text.runs();
    auto const styles = text.paragraphRuns();
    auto run = static_cast<std::size_t>(text.runAt(m_cells.front().start));
    auto styleRun = static_cast<std::size_t>(text.paragraphRunAt(m_cells.front().start));
    std::vector<HeightStack::Extent> heights;
    heights.reserve(m_rowStarts.size());
    for (std::size_t row = 0; row + 1 < m_rowStarts.size(); ++row) {
        double highest = 0;
        auto exact = true;
        for (auto cell = m_rowStarts[row]; cell < m_rowStarts[row + 1]; ++cell) {
            auto const range = cellRange(cell);
            while (run + 1 < runs.size() && runs[run + 1].location <= range.location)
                ++run;
            while (styleRun + 1 < styles.size() && styles[styleRun + 1].location <= range.location)
                ++styleRun;
            auto const& style = text.paragraphStyle(styles[styleRun]);
            auto const padding = style.block->padding;
            auto const estimate = estimateOf(row, cell, runs[run], style);
            highest = std::max(highest, estimate.height + 2 * padding);
            exact = exact && estimate.exact;
        }
        heights.push_back({ m_rowBorder + highest, exact });
    }
    m_heights = HeightStack(heights);
}

ParagraphEstimate TableLayout::estimateOf(
    std::size_t row, std::size_t cell, AttributedText::Run const& run, ParagraphStyle const& style)
{
    auto const range = cellRange(cell);
    auto const isOneParagraph = m_context.text().string().indexOf(u'\n', range.location) + 1 >= range.end();
    if (isOneParagraph)
        return estimatedParagraph(
            m_context, { { range.location, range.length - 1 } }, run, style, contentWidth(cell, *style.block));
    auto content = std::make_unique<TextFlow>(
        m_context, range, contentWidth(cell, *style.block), TextFlow::Tables::asParagraphs);
    ParagraphEstimate const estimate { content->height(), content->isExact() };
    if (content->unitCount() > manyParagraphs)
        keptFlow(static_cast<qsizetype>(row), cell) = std::move(content);
    return estimate;
}

TableBlock const& TableLayout::block(std::size_t cell) const
{
    auto const& text = m_context.text();
    auto const run = text.paragraphRunAt(m_cells[cell].start);
    return *text.paragraphStyle(text.paragraphRuns()[static_cast<std::size_t>(run)]).block;
}

TextRange TableLayout::cellRange(std::size_t cell) const
{
    return { m_cells[cell].start, static_cast<qsizetype>(m_cells[cell + 1].start) - m_cells[cell].start };
}

std::size_t TableLayout::cellHolding(qsizetype location) const
{
    auto const after = std::ranges::upper_bound(
        m_cells.begin(), m_cells.end() - 1, static_cast<quint32>(location), {}, &Cell::start);
    return static_cast<std::size_t>(std::max<qsizetype>(std::distance(m_cells.begin(), after) - 1, 0));
}

qsizetype TableLayout::rowHolding(std::size_t cell) const
{
    auto const after = std::ranges::upper_bound(m_rowStarts.begin(), m_rowStarts.end() - 1, cell);
    return std::distance(m_rowStarts.begin(), after) - 1;
}

double TableLayout::rightEdge(qsizetype row) const
{
    return m_columnEdges[static_cast<std::size_t>(m_cells[endOfCells(row) - 1].column) + 1];
}

QPointF TableLayout::contentTopLeft(std::size_t cell) const
{
    auto const& style = block(cell);
    return { m_columnEdges[static_cast<std::size_t>(m_cells[cell].column)] + leftBorder(style) + style.padding,
        m_rowBorder + style.padding };
}

// A grid has lines everywhere; the first of several fixed columns has none.
double TableLayout::leftBorder(TableBlock const& block) const
{
    return m_isFixed ? block.borderWidth : m_border;
}

double TableLayout::contentWidth(std::size_t cell, TableBlock const& block) const
{
    auto const column = static_cast<std::size_t>(m_cells[cell].column);
    return m_columnEdges[column + 1] - m_columnEdges[column] - leftBorder(block) - 2 * block.padding;
}

std::unique_ptr<TextFlow> TableLayout::makeFlow(qsizetype row, std::size_t cell) const
{
    auto content = std::make_unique<TextFlow>(
        m_context, cellRange(cell), contentWidth(cell, block(cell)), TextFlow::Tables::asParagraphs);
    // A height that is known is no estimate any more, and so must be where the lines stand within it.
    if (m_heights.isExact(row)) {
        if (content->unitCount() == 1)
            content->layOut(0, 0);
        else
            content->makeSomeExact(QDeadlineTimer(QDeadlineTimer::Forever));
    }
    return content;
}

std::unique_ptr<TextFlow>& TableLayout::keptFlow(qsizetype row, std::size_t cell)
{
    auto& flows = m_rows[row];
    flows.resize(endOfCells(row) - firstCell(row));
    return flows[cell - firstCell(row)];
}

TextFlow& TableLayout::flow(qsizetype row, std::size_t cell)
{
    auto& known = keptFlow(row, cell);
    if (!known)
        known = makeFlow(row, cell);
    return *known;
}

template<typename Work>
auto TableLayout::withFlow(qsizetype row, std::size_t cell, Work work) const
{
    auto const known = m_rows.find(row);
    if (known != m_rows.end() && known->second[cell - firstCell(row)])
        return work(*known->second[cell - firstCell(row)]);
    return work(*makeFlow(row, cell));
}

void TableLayout::measureRow(qsizetype row)
{
    double highest = 0;
    auto exact = true;
    for (auto cell = firstCell(row); cell < endOfCells(row); ++cell) {
        auto const& content = flow(row, cell);
        highest = std::max(highest, content.height() + 2 * block(cell).padding);
        exact = exact && content.isExact();
    }
    m_heights.set(row, { m_rowBorder + highest, exact });
}

void TableLayout::dropRows(qsizetype first, qsizetype end)
{
    for (auto row = m_rows.lower_bound(first); row != m_rows.end() && row->first < end;) {
        auto const isDear = [](std::unique_ptr<TextFlow> const& flow) {
            return flow && flow->unitCount() > manyParagraphs;
        };
        if (std::ranges::none_of(row->second, isDear)) {
            row = m_rows.erase(row);
            continue;
        }
        for (auto const& flow : row->second) {
            if (flow)
                flow->forgetLines();
        }
        ++row;
    }
}

void TableLayout::forgetLines()
{
    dropRows(0, rowCount());
}

void TableLayout::layOut(double top, double bottom)
{
    auto const shown = m_heights.layOut(
        top, bottom, [&](qsizetype row, double y) { layOutRow(row, top - y, bottom - y); });
    dropRows(0, shown.first);
    dropRows(shown.end, rowCount());
}

// A row whose height is known needs no lines before it is painted; one with long cells lets go of those out of sight.
void TableLayout::layOutRow(qsizetype row, double top, double bottom)
{
    auto const exact = m_heights.isExact(row);
    if (exact && !m_rows.contains(row))
        return;
    for (auto cell = firstCell(row); cell < endOfCells(row); ++cell) {
        auto& content = flow(row, cell);
        auto const y = contentTopLeft(cell).y();
        if (!exact || content.unitCount() > manyParagraphs)
            content.layOut(top - y, bottom - y);
    }
    if (!exact)
        measureRow(row);
}

bool TableLayout::makeSomeExact(QDeadlineTimer const& deadline)
{
    return m_heights.makeSomeExact(deadline, [&](qsizetype row) {
        auto const wasMade = m_rows.contains(row);
        auto more = false;
        for (auto cell = firstCell(row); cell < endOfCells(row); ++cell)
            more = flow(row, cell).makeSomeExact(deadline) || more;
        measureRow(row);
        if (!more && !wasMade)
            dropRows(row, row + 1);
        return more;
    });
}

TextAnchor TableLayout::anchorAt(double y)
{
    auto const place = m_heights.placeAt(y);
    auto const row = place.index;
    layOutRow(row, place.offset, place.offset);
    auto const local = m_heights.offsetOf(place);

    // The first cell that still has text there stands for the row.
    auto found = firstCell(row);
    for (auto cell = found; cell < endOfCells(row); ++cell) {
        if (contentTopLeft(cell).y() + flow(row, cell).height() > local) {
            found = cell;
            break;
        }
    }
    return flow(row, found).anchorAt(local - contentTopLeft(found).y());
}

double TableLayout::positionOf(TextAnchor const& anchor)
{
    auto const cell = cellHolding(anchor.location);
    auto const row = rowHolding(cell);
    auto const position = contentTopLeft(cell).y() + flow(row, cell).positionOf(anchor);
    if (!m_heights.isExact(row))
        measureRow(row);
    return m_heights.top(row) + position;
}

qsizetype TableLayout::characterIndexAt(QPointF point) const
{
    auto const row = m_heights.indexAt(point.y());
    auto cell = firstCell(row);
    while (cell + 1 < endOfCells(row) && m_columnEdges[static_cast<std::size_t>(m_cells[cell + 1].column)] <= point.x())
        ++cell;
    auto const local = point - QPointF(0, m_heights.top(row)) - contentTopLeft(cell);
    return withFlow(row, cell, [&](TextFlow const& content) { return content.characterIndexAt(local); });
}

QRectF TableLayout::boundingRect(TextRange range) const
{
    auto const rectIn = [&](std::size_t cell) {
        auto const row = rowHolding(cell);
        auto const rect = withFlow(row, cell, [&](TextFlow const& content) { return content.boundingRect(range); });
        return rect.translated(contentTopLeft(cell) + QPointF(0, m_heights.top(row)));
    };
    auto const first = cellHolding(range.location);
    auto const last = cellHolding(std::max(range.location, range.end() - 1));
    auto const above = rectIn(first);
    if (first == last)
        return above;
    auto const below = rectIn(last);
    return { 0, above.top(), width(), std::max(above.bottom(), below.bottom()) - above.top() };
}

TextRange TableLayout::lineRange(qsizetype location) const
{
    auto const cell = cellHolding(location);
    return withFlow(rowHolding(cell), cell, [&](TextFlow const& content) { return content.lineRange(location); });
}

void TableLayout::addSelection(std::vector<QRectF>& covered, TextRange range, QPointF topLeft, QRectF const& clip) const
{
    auto const first = std::max(m_heights.indexAt(clip.top() - topLeft.y()), rowHolding(cellHolding(range.location)));
    m_heights.forEach(first, topLeft.y(), clip.bottom(), [&](qsizetype row, double y) {
        for (auto cell = firstCell(row); cell < endOfCells(row); ++cell) {
            if (cellRange(cell).location >= range.end())
                return false;
            if (cellRange(cell).end() <= range.location)
                continue;
            auto const content = QPointF(topLeft.x(), y) + contentTopLeft(cell);
            withFlow(row, cell, [&](TextFlow const& flow) { flow.addSelection(covered, range, content, clip); });
        }
        return true;
    });
}

}
