#pragma once

#include <QColor>
#include <QRectF>

class QPainter;

namespace Quillory {

// Draws the program's own symbol within the rectangle: a sheet whose right side is a quill. The same outlines stand in
// the symbolic icon that is installed for desktops that ask for it by name.
void drawProgram(QPainter& painter, QRectF const& rectangle, QColor const& ink);

}
