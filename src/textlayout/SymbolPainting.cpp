#include "textlayout/SymbolPainting.h"

#include "textlayout/SymbolDrawings.h"

#include <QPainter>

#include <algorithm>

namespace Quillory {

namespace {

constexpr double lineWidth = 1.0 / 14; // of the symbol's size, as all the rest
constexpr double inset = 1.0 / 8;
constexpr double cornerRadius = 1.0 / 7;
constexpr double dash = 1.9; // in widths of the line
constexpr double gap = 1.7;

constexpr double drawnLine = 1.6;   // in units of the drawings
constexpr double thinnestLine = 1.2; // points, which small symbols need to be seen

}

void paintSymbol(QPainter& painter, QString const& name, QRectF const& rectangle, QColor const& color)
{
    auto const size = std::min(rectangle.width(), rectangle.height());
    if (auto const* const drawing = SymbolDrawing::of(name))
        return paintDrawing(
            painter, *drawing, rectangle, color, std::max(drawnLine * size / SymbolDrawing::side, thinnestLine));
    QPen pen(color, size * lineWidth);
    pen.setDashPattern({ dash, gap });
    pen.setCapStyle(Qt::FlatCap);

    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(pen);
    painter.setBrush(Qt::NoBrush);
    auto const margin = size * inset;
    painter.drawRoundedRect(
        rectangle.adjusted(margin, margin, -margin, -margin), size * cornerRadius, size * cornerRadius);
    painter.restore();
}

void paintDrawing(
    QPainter& painter, SymbolDrawing const& drawing, QRectF const& rectangle, QColor const& color, double lineWidth)
{
    auto const scale = std::min(rectangle.width(), rectangle.height()) / SymbolDrawing::side;
    painter.save();
    painter.translate(rectangle.center());
    painter.scale(scale, scale);
    painter.translate(-SymbolDrawing::side / 2, -SymbolDrawing::side / 2);
    painter.setRenderHint(QPainter::Antialiasing);
    if (drawing.ink == SymbolDrawing::Ink::area)
        painter.fillPath(drawing.path, color);
    else
        painter.strokePath(drawing.path, QPen(color, lineWidth / scale, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.restore();
}

}
