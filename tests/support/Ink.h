#pragma once

#include <QColor>
#include <QImage>
#include <QPainter>

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <string>

namespace Quillory {

// Compares a picture with what is expected to lie below its ink, and then accounts for the ink, colour by colour. In the
// end nothing may be left over. Pictures are of one scale; rectangles are in points.
class Ink {
public:
    Ink(QImage const& painted, QImage const& below)
        : m_painted(painted.convertToFormat(QImage::Format_RGB32))
        , m_below(below.convertToFormat(QImage::Format_RGB32))
        , m_left(painted.size(), QImage::Format_Grayscale8)
    {
        for (int y = 0; y < m_left.height(); ++y) {
            for (int x = 0; x < m_left.width(); ++x)
                m_left.scanLine(y)[x] = distance(pixel(m_painted, x, y), pixel(m_below, x, y)) > rounding;
        }
    }

    struct Found {
        double strongest = 0; // the most of the colour that a pixel has
        double columns = 0; // the share of the box's columns that have ink
        bool ground = false; // the ground was seen
    };
    // Takes what is between the colour and what lies below it, which may be a ground of its own.
    Found account(QRectF const& box, QColor const& color, std::optional<QColor> const& ground = {}, double reach = 4)
    {
        auto const scale = m_painted.devicePixelRatio();
        auto const inner = QRectF(box.topLeft() * scale, box.size() * scale).toAlignedRect();
        auto const around = QRectF(inner).adjusted(
            -reach * scale, -reach * scale / 2, reach * scale, reach * scale / 2);
        Found found;
        std::vector<bool> columns(static_cast<std::size_t>(std::max(inner.width(), 0)), false);
        auto const area = around.toAlignedRect() & m_painted.rect();
        for (int y = area.top(); y <= area.bottom(); ++y) {
            for (int x = area.left(); x <= area.right(); ++x) {
                if (distance(pixel(m_painted, x, y), pixel(m_below, x, y)) <= rounding)
                    continue;
                auto const below = pixel(m_below, x, y);
                auto const full = over(below, color);
                auto const share = std::max(
                    shareOf(full, below, x, y), ground ? shareOf(full, over(below, *ground), x, y) : -1);
                if (share < 0)
                    continue;
                m_left.scanLine(y)[x] = 0;
                if (!inner.contains(x, y))
                    continue;
                found.strongest = std::max(found.strongest, share);
                found.ground = found.ground
                    || (ground && distance(pixel(m_painted, x, y), over(below, *ground)) <= rounding);
                if (share > 0.2)
                    columns[static_cast<std::size_t>(x - inner.left())] = true;
            }
        }
        found.columns = columns.empty()
            ? 0
            : static_cast<double>(std::ranges::count(columns, true)) / static_cast<double>(columns.size());
        return found;
    }

    // Takes whatever there is: pictures of the desktop's own.
    void ignore(QRectF const& box)
    {
        auto const scale = m_painted.devicePixelRatio();
        auto const area = QRectF(box.topLeft() * scale, box.size() * scale).toAlignedRect() & m_left.rect();
        for (int y = area.top(); y <= area.bottom(); ++y)
            std::fill_n(m_left.scanLine(y) + area.left(), area.width(), uchar(0));
    }

    // Where the first pixel of another colour is that nothing accounts for; empty when there is none.
    std::string leftOver() const
    {
        for (int y = 0; y < m_left.height(); ++y) {
            auto const* const line = m_left.constScanLine(y);
            auto const* const found = std::find(line, line + m_left.width(), 1);
            if (found == line + m_left.width())
                continue;
            auto const x = static_cast<int>(found - line);
            return QStringLiteral("%1, %2: %3 on %4")
                .arg(x)
                .arg(y)
                .arg(m_painted.pixelColor(x, y).name(), m_below.pixelColor(x, y).name())
                .toStdString();
        }
        return {};
    }

private:
    using Vector = std::array<double, 3>;
    static constexpr double rounding = 3; // of blending, in steps of a channel
    static constexpr double closeness = 32;

    static Vector vectorOf(QRgb color) { return { double(qRed(color)), double(qGreen(color)), double(qBlue(color)) }; }
    static Vector pixel(QImage const& image, int x, int y)
    {
        return vectorOf(reinterpret_cast<QRgb const*>(image.constScanLine(y))[x]);
    }
    static Vector over(Vector below, QColor const& color)
    {
        auto const full = vectorOf(color.rgb());
        for (std::size_t channel = 0; channel < 3; ++channel)
            below[channel] = std::lerp(below[channel], full[channel], color.alphaF());
        return below;
    }
    static double distance(Vector const& one, Vector const& other)
    {
        return std::hypot(one[0] - other[0], one[1] - other[1], one[2] - other[2]);
    }
    // How much the pixel has of the colour, from 0 to 1, or -1 when it has something of another one.
    double shareOf(Vector const& full, Vector const& ground, int x, int y) const
    {
        auto const painted = pixel(m_painted, x, y);
        auto const length = distance(full, ground);
        if (length == 0)
            return distance(painted, full) <= rounding ? 1 : -1;
        double share = 0;
        for (std::size_t channel = 0; channel < 3; ++channel)
            share += (painted[channel] - ground[channel]) * (full[channel] - ground[channel]) / length / length;
        share = std::clamp(share, 0.0, 1.0);
        Vector const nearest { std::lerp(ground[0], full[0], share), std::lerp(ground[1], full[1], share),
            std::lerp(ground[2], full[2], share) };
        return distance(painted, nearest) <= closeness ? share : -1;
    }

    QImage m_painted;
    QImage m_below;
    QImage m_left; // 1 where ink is not accounted for
};

}
