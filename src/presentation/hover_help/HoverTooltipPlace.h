#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>

namespace Quillory::HoverTooltipPlace {

inline constexpr int gap = 6;    // points between the control and its help
inline constexpr int margin = 8; // points to the edges of the visible frame

// The upper left corner of help of that size: centred below the anchor, above it where there is no room below, and
// within the visible frame as far as it fits. All in the coordinates of the desktop.
QPoint origin(QRect const& anchor, QSize const& size, QRect const& visible);

// The same for help that stands level with the anchor: to its right, or to its left where there is no room.
QPoint besideOrigin(QRect const& anchor, QSize const& size, QRect const& visible);

}
