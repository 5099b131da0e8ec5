#pragma once

#include "rendering/ReaderColors.h"

#include <QRectF>

#include <span>

class QPainter;

namespace Quillory {

// Washes what is selected with the desktop's highlight, over the text, so that it stays readable whatever its colour:
// dark text stays dark on a light surface, light text light on a dark one.
void paintSelection(
    QPainter& painter, std::span<QRectF const> covered, QColor const& highlight, ReaderColors::Appearance appearance);

}
