#include "reader/text/SelectionPainting.h"

#include <QPainter>

#include <algorithm>

namespace Quillory {

namespace {

QColor washOf(QColor const& highlight, ReaderColors::Appearance appearance)
{
    auto const isColored = highlight.hsvSaturationF() > 0.05F;
    auto const hue = std::max(highlight.hsvHueF(), 0.0F);
    if (appearance == ReaderColors::Appearance::dark)
        return QColor::fromHsvF(hue, isColored ? 0.70F : 0, 0.40F);
    return QColor::fromHsvF(hue, isColored ? 0.30F : 0, isColored ? 1.0F : 0.82F);
}

}

void paintSelection(
    QPainter& painter, std::span<QRectF const> covered, QColor const& highlight, ReaderColors::Appearance appearance)
{
    auto const isDark = appearance == ReaderColors::Appearance::dark;
    auto const wash = washOf(highlight, appearance);
    painter.setCompositionMode(isDark ? QPainter::CompositionMode_Screen : QPainter::CompositionMode_Multiply);
    for (auto const& rectangle : covered)
        painter.fillRect(rectangle, wash);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
}

}
