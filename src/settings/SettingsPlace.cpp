#include "settings/SettingsPlace.h"

#include <algorithm>

namespace Quillory {

namespace {

constexpr int gap = 12;      // points, between the two windows
constexpr int titleBar = 36; // that window managers put around it

}

QRect SettingsPlace::frame(QSize wanted, QRect visible, std::optional<QRect> const& reader)
{
    auto const room = visible.adjusted(0, titleBar, 0, 0);
    QRect frame(QPoint(), wanted.boundedTo(room.size()));
    frame.moveCenter(room.center());
    if (!reader)
        return frame;
    auto const onTheRight = reader->right() + 1 + gap;
    auto const onTheLeft = reader->left() - gap - frame.width();
    if (onTheRight + frame.width() <= room.right() + 1)
        frame.moveLeft(onTheRight);
    else if (onTheLeft >= room.left())
        frame.moveLeft(onTheLeft);
    else
        return frame;
    frame.moveTop(std::clamp(reader->top(), room.top(), room.bottom() + 1 - frame.height()));
    return frame;
}

}
