#pragma once

#include "textlayout/ColumnWidths.h"
#include "textlayout/ParagraphEstimate.h"
#include "textlayout/TextFlow.h"

#include <map>
#include <memory>
#include <vector>

namespace Quillory {

// A table as a grid: columns as wide as their content asks for and the width allows, rows as high as their highest cell.
// Borders of neighbours are one line. Columns go by all cells from the start, so that their widths never change while one
// reads. Rows are laid out when asked for. Positions are points from the table's top left corner.
class TableLayout {
public:
    // The context outlives the table. `range` is the table's own.
    TableLayout(LayoutContext const& context, TextRange range, double availableWidth);
    Q_DISABLE_COPY_MOVE(TableLayout)

    double availableWidth() const { return m_availableWidth; }
    void setAvailableWidth(double width);
    void forgetLines();

    // As those of TextFlow.
    void layOut(double top, double bottom);
    bool makeSomeExact(QDeadlineTimer const& deadline);
    bool isExact() const { return m_heights.isExact(); }
    TextAnchor anchorAt(double y);
    double positionOf(TextAnchor const& anchor);

    double width() const { return m_columnEdges.back() + (m_isFixed ? 0 : m_border); }
    double height() const { return m_heights.total() + m_rowBorder; }
    // Laying it out again costs less than keeping it would.
    bool isShort() const;
    qsizetype rowCount() const { return m_heights.size(); }

    void paint(QPainter& painter, QPointF topLeft, QRectF const& clip);
    qsizetype characterIndexAt(QPointF point) const;
    QRectF boundingRect(TextRange range) const;
    TextRange lineRange(qsizetype location) const;
    void addSelection(std::vector<QRectF>& covered, TextRange range, QPointF topLeft, QRectF const& clip) const;

private:
    struct Cell {
        quint32 start = 0; // a cell ends where the next one starts
        int column = 0;
    };
    // The flows of a row's cells, each made when first needed.
    using LaidOutRow = std::vector<std::unique_ptr<TextFlow>>;

    void readCells(TextRange range);
    void measureColumns();
    void arrange();
    double fixedWidth(std::size_t column) const;
    void estimateRows();
    ParagraphEstimate estimateOf(
        std::size_t row, std::size_t cell, AttributedText::Run const& run, ParagraphStyle const& style);

    TableBlock const& block(std::size_t cell) const;
    TextRange cellRange(std::size_t cell) const;
    std::size_t firstCell(qsizetype row) const { return m_rowStarts[static_cast<std::size_t>(row)]; }
    std::size_t endOfCells(qsizetype row) const { return m_rowStarts[static_cast<std::size_t>(row) + 1]; }
    std::size_t cellHolding(qsizetype location) const;
    qsizetype rowHolding(std::size_t cell) const;
    double rightEdge(qsizetype row) const; // of the row's last cell, where its line begins

    // Of a cell's content, from its row's top left corner.
    QPointF contentTopLeft(std::size_t cell) const;
    double leftBorder(TableBlock const& block) const;
    double contentWidth(std::size_t cell, TableBlock const& block) const;
    std::unique_ptr<TextFlow> makeFlow(qsizetype row, std::size_t cell) const;
    std::unique_ptr<TextFlow>& keptFlow(qsizetype row, std::size_t cell);
    TextFlow& flow(qsizetype row, std::size_t cell);
    template<typename Work>
    auto withFlow(qsizetype row, std::size_t cell, Work work) const;
    void layOutRow(qsizetype row, double top, double bottom);
    void measureRow(qsizetype row);
    void dropRows(qsizetype first, qsizetype end);
    void paintBorders(QPainter& painter, QPointF topLeft, qsizetype row, QRectF const& clip) const;
    void paintBackgrounds(QPainter& painter, QPointF topLeft, qsizetype row) const;

    LayoutContext const& m_context;
    double m_availableWidth;
    bool m_isFixed = false; // columns take a fixed share each
    double m_border = 0; // of the lines down
    double m_rowBorder = 0; // of those across
    std::vector<Cell> m_cells; // and one after the last that says where it ends
    std::vector<std::size_t> m_rowStarts; // positions in m_cells, and the number of cells
    std::vector<ColumnDemand> m_demands;
    std::vector<double> m_columnEdges; // left edges of the lines before each column and after the last
    HeightStack m_heights; // of the rows, each with the line above it
    std::map<qsizetype, LaidOutRow> m_rows;
};

}
