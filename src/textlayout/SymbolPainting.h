#pragma once

#include <QColor>
#include <QRectF>
#include <QString>

class QPainter;

namespace Quillory {

struct SymbolDrawing;

// Draws the symbol of that name within the rectangle. A name that has no drawing gets the dashed square.
void paintSymbol(QPainter& painter, QString const& name, QRectF const& rectangle, QColor const& color);

// Draws it within the rectangle, in lines of that width, in points.
void paintDrawing(
    QPainter& painter, SymbolDrawing const& drawing, QRectF const& rectangle, QColor const& color, double lineWidth);

}
