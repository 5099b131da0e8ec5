#pragma once

#include <QPaintDevice>
#include <QPainter>
#include <QRectF>

#include <algorithm>
#include <cmath>

namespace Quillory {

// The pixels of a painter's device. Lines begin on one and are at least one wide: half of one would be a smear on plain
// screens. Places are in the painter's points, whose origin lies on a pixel.
class PixelGrid {
public:
    explicit PixelGrid(QPainter const& painter)
        : m_scale(painter.device()->devicePixelRatio())
    {
    }

    double edge(double position) const { return std::floor(position * m_scale + 0.01) / m_scale; }
    double thickness(double width) const { return std::max(1.0, std::round(width * m_scale)) / m_scale; }

    // To be stroked with a pen of that width, which then covers whole pixels just inside the box.
    QRectF frame(QRectF const& box, double width) const
    {
        auto const half = width / 2;
        return QRectF(QPointF(edge(box.left()), edge(box.top())), QPointF(edge(box.right()), edge(box.bottom())))
            .adjusted(half, half, -half, -half);
    }

private:
    double m_scale;
};

}
