#pragma once

#include <QString>

class QFont;
class QPalette;

namespace Quillory::ReaderStyle {

// The style sheet of the reader's window. Sizes of text are shares of the desktop's font.
QString sheet(QPalette const& palette, QFont const& font);

// Of the header over a text of that size, in points.
QFont titleFont(QFont const& desktop, double textSize);

}
