#pragma once

#include "rendering/ReaderColors.h"

#include <QRectF>

#include <span>

class QPainter;

namespace Quillory {

// Washes places of the text with a colour, over the letters, so that they stay readable whatever the colour: dark text
// stays dark on a light surface, light text light on a dark one. `radius` rounds the corners.
void paintWash(QPainter& painter, std::span<QRectF const> covered, QColor const& color,
    ReaderColors::Appearance appearance, double radius = 0);

}
