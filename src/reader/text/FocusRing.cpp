#include "reader/text/FocusRing.h"

#include <QPainter>

namespace Quillory {

namespace {

constexpr double ringWidth = 2; // points

}

void paintFocusRing(QPainter& painter, QRect const& within, double radius, QColor const& color)
{
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(1);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(color, ringWidth));
    auto const half = ringWidth / 2;
    painter.drawRoundedRect(QRectF(within).adjusted(half, half, -half, -half), radius, radius);
}

}
