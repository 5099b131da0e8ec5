#include "textlayout/PixelGrid.h"
#include "textlayout/TableLayout.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace Quillory {

namespace {

// Translucent fills that are higher are handed to other threads, which takes longer than filling them.
constexpr double longestPiece = 32; // points

}

void TableLayout::paint(QPainter& painter, QPointF topLeft, QRectF const& clip)
{
    auto row = m_heights.indexAt(clip.top() - topLeft.y() - m_rowBorder);
    for (; row < rowCount(); ++row) {
        auto const rowTopLeft = topLeft + QPointF(0, m_heights.top(row));
        if (rowTopLeft.y() >= clip.bottom())
            break;
        paintBackgrounds(painter, rowTopLeft, row);
        paintBorders(painter, rowTopLeft, row, clip);
        for (auto cell = firstCell(row); cell < endOfCells(row); ++cell) {
            auto const content = rowTopLeft + contentTopLeft(cell);
            // Keycaps reach into the padding.
            auto const padding = block(cell).padding;
            auto const right = content.x() + contentWidth(cell, block(cell)) + padding;
            if (content.x() - padding < clip.right() && right > clip.left())
                flow(row, cell).paint(painter, content, clip);
        }
    }
}

void TableLayout::paintBackgrounds(QPainter& painter, QPointF topLeft, qsizetype row) const
{
    PixelGrid const grid(painter);
    auto const line = m_rowBorder > 0 ? grid.thickness(m_rowBorder) : 0;
    auto const top = grid.edge(topLeft.y()) + line;
    auto const bottom = grid.edge(topLeft.y() + m_heights.height(row));
    for (auto cell = firstCell(row); cell < endOfCells(row); ++cell) {
        auto const& background = block(cell).background;
        if (!background)
            continue;
        auto const column = static_cast<std::size_t>(m_cells[cell].column);
        auto const left = grid.edge(topLeft.x() + m_columnEdges[column]) + line;
        auto const right = grid.edge(topLeft.x() + m_columnEdges[column + 1]);
        painter.fillRect(QRectF(left, top, right - left, bottom - top), m_context.colors().resolved(*background));
    }
}

void TableLayout::paintBorders(QPainter& painter, QPointF topLeft, qsizetype row, QRectF const& clip) const
{
    if (m_border <= 0)
        return;
    PixelGrid const grid(painter);
    auto const line = grid.thickness(m_border);
    auto const left = grid.edge(topLeft.x());
    auto const top = grid.edge(topLeft.y());
    auto const bottom = grid.edge(topLeft.y() + m_heights.height(row));
    auto const colorOf = [this](std::size_t cell) { return m_context.colors().resolved(block(cell).borderColor); };
    auto const down = [&](double edge, double from, std::size_t cell) {
        auto const seen = std::max(0.0, std::floor((clip.top() - from) / longestPiece) * longestPiece);
        for (auto y = from + seen; y < std::min(bottom, clip.bottom()); y += longestPiece)
            painter.fillRect(
                QRectF(grid.edge(topLeft.x() + edge), y, line, std::min(longestPiece, bottom - y)), colorOf(cell));
    };
    if (m_rowBorder <= 0) {
        for (auto cell = firstCell(row); cell < endOfCells(row); ++cell) {
            if (block(cell).border == TableBlock::Border::leftEdge)
                down(m_columnEdges[static_cast<std::size_t>(m_cells[cell].column)], top, cell);
        }
        return;
    }
    auto const across = [&](double y, double edge) {
        auto const right = grid.edge(topLeft.x() + edge) + line;
        painter.fillRect(QRectF(left, y, right - left, line), colorOf(firstCell(row)));
    };
    across(top, row > 0 ? std::max(rightEdge(row), rightEdge(row - 1)) : rightEdge(row));
    if (row + 1 == rowCount())
        across(bottom, rightEdge(row));

    // Every line once, and none over another: they may be translucent.
    for (auto cell = firstCell(row); cell < endOfCells(row); ++cell)
        down(m_columnEdges[static_cast<std::size_t>(m_cells[cell].column)], top + line, cell);
    down(rightEdge(row), top + line, endOfCells(row) - 1);
}

}
