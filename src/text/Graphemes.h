#pragma once

#include <QStringView>

namespace Quillory {

// How many characters a person would count: grapheme clusters.
qsizetype graphemeCount(QStringView text);

}
