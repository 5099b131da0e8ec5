#include "reader/text/Wash.h"

#include <QPainter>

#include <algorithm>

namespace Quillory {

namespace {

QColor washOf(QColor const& color, ReaderColors::Appearance appearance)
{
    auto const isColored = color.hsvSaturationF() > 0.05F;
    auto const hue = std::max(color.hsvHueF(), 0.0F);
    if (appearance == ReaderColors::Appearance::dark)
        return QColor::fromHsvF(hue, isColored ? 0.70F : 0, 0.40F);
    return QColor::fromHsvF(hue, isColored ? 0.30F : 0, isColored ? 1.0F : 0.82F);
}

}

void paintWash(QPainter& painter, std::span<QRectF const> covered, QColor const& color,
    ReaderColors::Appearance appearance, double radius)
{
    auto const isDark = appearance == ReaderColors::Appearance::dark;
    painter.setCompositionMode(isDark ? QPainter::CompositionMode_Screen : QPainter::CompositionMode_Multiply);
    painter.setPen(Qt::NoPen);
    painter.setBrush(washOf(color, appearance));
    for (auto const& rectangle : covered) {
        if (radius > 0)
            painter.drawRoundedRect(rectangle, radius, radius);
        else
            painter.fillRect(rectangle, painter.brush());
    }
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
}

}
