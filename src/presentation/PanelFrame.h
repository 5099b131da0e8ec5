#pragma once

#include "platform/Screens.h"

#include <QRectF>
#include <QString>
#include <QStringView>

#include <optional>

// The place the reader panel comes up at, and how its frame is kept.
namespace Quillory::PanelFrame {

inline constexpr QSizeF defaultSize { 880, 640 };
inline constexpr QSizeF minimumSize { 440, 360 };

// "{{x, y}, {width, height}}", each number as short as it can be and still read back as the same.
QString string(QRectF const& frame);

// The empty rectangle for any other text.
QRectF fromString(QStringView text);

// Whether a stored frame is one that the panel may take.
bool isUsable(QRectF const& frame);

// No larger than `visible` and within it; what is too large stands at its upper left.
QRectF clamped(QRectF const& frame, QRectF const& visible);

// Of the default size, in the middle of `visible`.
QRectF centered(QRectF const& visible);

// The frame for a show: the stored one, or the default size where the panel stood last. On another screen than its own
// it takes the same place as on that one, as far as there is room; without a `target` it stays.
QRectF forShow(std::optional<QString> const& stored, QPointF lastOrigin, QList<Screens::Screen> const& screens,
    std::optional<Screens::Screen> const& target);

// The screen that the user is on: the one with most of the window in front, given in pixels of the window system, else
// the one with the pointer, else the main one. Absent without screens.
std::optional<Screens::Screen> usersScreen(
    QList<Screens::Screen> const& screens, std::optional<QRect> const& front, QPoint pointer);

// The screen with most of `frame`, or else the main one.
std::optional<Screens::Screen> screenOf(QList<Screens::Screen> const& screens, QRect const& frame);

}
