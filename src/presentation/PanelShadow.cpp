#include "presentation/PanelShadow.h"

#include "presentation/PanelCorners.h"

#include <QImage>
#include <QPainter>
#include <QPixmap>

#include <qdrawutil.h>

#include <algorithm>
#include <cmath>

namespace Quillory {

namespace {

constexpr double reach = 24; // from the border of what casts it until nothing is left
constexpr double drop = 8; // by how much it lies lower than the panel
constexpr double darkest = 0.32; // at that border
constexpr int corner = 2 * PanelCorners::radius; // how much of the panel's sides the corners of the tile take

// How far a point lies outside of a rectangle with round corners.
double distance(QPointF const& point, QRectF const& rounded)
{
    auto const inner = rounded.adjusted(
        PanelCorners::radius, PanelCorners::radius, -PanelCorners::radius, -PanelCorners::radius);
    auto const x = std::max({ inner.left() - point.x(), point.x() - inner.right(), 0.0 });
    auto const y = std::max({ inner.top() - point.y(), point.y() - inner.bottom(), 0.0 });
    return std::max(std::hypot(x, y) - PanelCorners::radius, 0.0);
}

// The shadow of the smallest panel: its corners, and between them a pixel that is stretched.
QPixmap tile()
{
    auto const margins = PanelShadow::margins;
    QRectF const panel(margins.left(), margins.top(), 2 * corner + 1, 2 * corner + 1);
    QImage image(panel.toRect().marginsAdded(margins).size(), QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            auto const left = 1 - std::min(distance({ x + 0.5, y + 0.5 }, panel.translated(0, drop)) / reach, 1.0);
            image.setPixel(x, y, qPremultiply(qRgba(0, 0, 0, qRound(255 * darkest * left * left))));
        }
    }
    return QPixmap::fromImage(image);
}

}

void PanelShadow::paint(QPainter& painter, QRect const& panel)
{
    static QPixmap const shadow = tile();
    auto const sides = margins + QMargins(corner, corner, corner, corner);
    qDrawBorderPixmap(&painter, panel.marginsAdded(margins), sides, shadow);
}

}
