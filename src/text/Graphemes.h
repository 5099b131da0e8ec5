#pragma once

#include <QStringView>

namespace Quillory {

// How many characters a person would count: grapheme clusters.
qsizetype graphemeCount(QStringView text);

// The first `count` of them, or the whole text where there are fewer. One of more than 64 units is cut, so that the cost
// depends on `count` alone.
QStringView firstGraphemes(QStringView text, qsizetype count);

}
