#include "linux/tray/ProgramDrawing.h"

#include <QPainter>
#include <QPainterPath>

namespace Quillory {

namespace {

constexpr double units = 16; // of the drawing, along each side

QPainterPath sheet()
{
    QPainterPath path(QPointF(9.2, 1.8));
    path.lineTo(3.4, 1.8);
    path.cubicTo(2.5, 1.8, 1.8, 2.5, 1.8, 3.4);
    path.lineTo(1.8, 12.6);
    path.cubicTo(1.8, 13.5, 2.5, 14.2, 3.4, 14.2);
    path.lineTo(4.6, 14.2);
    path.moveTo(4.8, 5.2);
    path.lineTo(7.6, 5.2);
    path.moveTo(4.8, 8.4);
    path.lineTo(6.2, 8.4);
    return path;
}

QPainterPath quill()
{
    QPainterPath path(QPointF(7.0, 15.2));
    path.cubicTo(6.8, 9.0, 9.4, 3.6, 15.2, 0.8);
    path.cubicTo(15.6, 6.0, 13.6, 10.2, 9.2, 11.6);
    path.lineTo(8.4, 15.2);
    path.closeSubpath();
    return path;
}

}

void drawProgram(QPainter& painter, QRectF const& rectangle, QColor const& ink)
{
    painter.save();
    painter.translate(rectangle.topLeft());
    painter.scale(rectangle.width() / units, rectangle.height() / units);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(ink, 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(sheet());
    painter.fillPath(quill(), ink);
    painter.restore();
}

}
