#include "presentation/hover_help/HoverTooltipPlace.h"

#include <algorithm>

namespace Quillory {

QPoint HoverTooltipPlace::origin(QRect const& anchor, QSize const& size, QRect const& visible)
{
    auto const room = visible.marginsRemoved({ margin, margin, margin, margin });
    auto const anchorEnd = anchor.y() + anchor.height();
    auto const rightmost = room.x() + room.width() - size.width();
    auto const lowest = room.y() + room.height() - size.height();

    auto const x = std::max(room.x(), std::min(anchor.x() + (anchor.width() - size.width()) / 2, rightmost));
    auto y = anchorEnd + gap;
    if (y > lowest)
        y = anchor.y() - gap - size.height();
    // What is higher than the frame ends at its lower edge.
    return { x, std::min(lowest, std::max(y, room.y())) };
}

QPoint HoverTooltipPlace::besideOrigin(QRect const& anchor, QSize const& size, QRect const& visible)
{
    auto const room = visible.marginsRemoved({ margin, margin, margin, margin });
    auto const rightmost = room.x() + room.width() - size.width();
    auto const lowest = room.y() + room.height() - size.height();

    auto x = anchor.x() + anchor.width() + gap;
    if (x > rightmost)
        x = anchor.x() - gap - size.width();
    return { std::min(rightmost, std::max(x, room.x())), std::min(lowest, std::max(anchor.y(), room.y())) };
}

}
