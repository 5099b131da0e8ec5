#pragma once

#include <QString>
#include <QStringView>

namespace Quillory {

// Characters, as a person counts them, of a text that stands in a row, a header, a menu or a message.
constexpr qsizetype oneLineLimit = 200;

// A text of any length as one line: line breaks and control characters are blanks, and of more than `characters` the last
// one is "…". Costs no more than the line is long.
QString oneLine(QStringView text, qsizetype characters = oneLineLimit);

}
