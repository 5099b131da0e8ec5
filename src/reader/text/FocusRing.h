#pragma once

#include <QColor>
#include <QRect>

class QPainter;

namespace Quillory {

// Shows what has the keyboard: a line along the inside of the rectangle.
void paintFocusRing(QPainter& painter, QRect const& within, double radius, QColor const& color);

}
