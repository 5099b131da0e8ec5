#pragma once

#include <QColor>

namespace Quillory {

// How well one colour can be told from another: 1 for the same, 21 for black and white.
double contrast(QColor const& one, QColor const& other);

}
