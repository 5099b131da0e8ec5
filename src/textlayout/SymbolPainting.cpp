#include "textlayout/SymbolPainting.h"

#include <QPainter>

namespace Quillory {

namespace {

constexpr double lineWidth = 1.0 / 14; // of the symbol's size, as all the rest
constexpr double inset = 1.0 / 8;
constexpr double cornerRadius = 1.0 / 7;
constexpr double dash = 1.9; // in widths of the line
constexpr double gap = 1.7;

}

void paintSymbol(QPainter& painter, QString const&, QRectF const& rectangle, QColor const& color)
{
    auto const size = std::min(rectangle.width(), rectangle.height());
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

}
