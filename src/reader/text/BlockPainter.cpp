#include "reader/text/BlockPainter.h"

#include <QPainter>
#include <QPainterPath>

namespace Quillory {

namespace {

constexpr double radius = 6; // of the corners
constexpr double outline = 0.5; // one pixel of a screen at 200 %

// The last of a block, with its round corners.
QPainterPath rightEnd(QRectF const& block, double width)
{
    constexpr double corner = 2 * radius;
    QPainterPath path(QPointF(block.right() - width, block.top()));
    path.arcTo(QRectF(block.right() - corner, block.top(), corner, corner), 90, -90);
    path.arcTo(QRectF(block.right() - corner, block.bottom() - corner, corner, corner), 0, -90);
    path.lineTo(block.right() - width, block.bottom());
    path.closeSubpath();
    return path;
}

}

BlockPainter::BlockPainter(std::vector<CodeBlock> blocks, ReaderColors::Appearance appearance)
    : m_blocks(std::move(blocks))
    , m_background(ReaderColors::codeBackground.resolved(appearance))
    , m_border(ReaderColors::codeBorder.resolved(appearance))
    , m_surface(ReaderColors::surface.resolved(appearance))
{
}

void BlockPainter::paintBackgrounds(QPainter& painter) const
{
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_background);
    for (auto const& block : m_blocks)
        painter.drawRoundedRect(block.rectangle, radius, radius);
}

void BlockPainter::paintEdges(QPainter& painter, double left, double width) const
{
    painter.setPen(QPen(m_border, outline));
    painter.setBrush(Qt::NoBrush);
    for (auto const& [target, rectangle] : m_blocks) {
        painter.fillPath(rightEnd(rectangle, CodeBlock::buttonRoom), m_background);
        QPainterPath shape;
        shape.addRoundedRect(rectangle, radius, radius);
        // The part that lies in both shapes is not filled.
        QPainterPath outside;
        outside.addRect(QRectF(left, rectangle.top(), width, rectangle.height()));
        outside.addPath(shape);
        painter.fillPath(outside, m_surface);
        painter.drawPath(shape);
    }
}

}
