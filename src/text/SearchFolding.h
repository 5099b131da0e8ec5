#pragma once

#include <QString>
#include <QStringView>

namespace Quillory {

// The form in which texts are compared for search: full case folding ("ß" is "ss", "ﬁ" is "fi"), canonically decomposed,
// without non-spacing marks. Empty for marks alone.
QString foldedForSearch(QStringView text);

// Adds the form of one scalar value.
void appendFoldedForSearch(QString& folded, char32_t scalar);

}
