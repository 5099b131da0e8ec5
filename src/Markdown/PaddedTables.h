#pragma once

#include <QByteArrayView>

namespace Quillory::Markup {

// The parser fills the short rows of a table up to the width of its head, without a bound: a file of 24 KB can cost
// gigabytes. This counts, before parsing and never too low, the cells that a text can make it add.
qsizetype paddedCellBound(QByteArrayView utf8);

// A text that can add more cells than this is parsed without tables.
inline constexpr qsizetype paddedCellLimit = 524'288;

}
