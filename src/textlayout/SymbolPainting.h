#pragma once

#include <QColor>
#include <QRectF>
#include <QString>

class QPainter;

namespace Quillory {

// Draws the symbol of that name within the rectangle. A name that has no drawing gets the dashed square.
void paintSymbol(QPainter& painter, QString const& name, QRectF const& rectangle, QColor const& color);

}
