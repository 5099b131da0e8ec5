#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QStringView>

namespace Quillory {

// The form for search (`foldedForSearch`) as bytes, made to be kept and scanned: UTF-8, but for the letters of Hangul
// syllables and the halves of vowel signs, which take a byte each. So no writing in daily use takes more than 1.1 times
// its room in a file, though a text made of nothing but musical notes takes three times that.
void appendSearchBytes(QByteArray& bytes, QStringView text);
QByteArray searchBytes(QStringView text);

// Whether the bytes hold those of the query, both made as above. An empty query is held by none.
bool holdsSearchBytes(QByteArrayView bytes, QByteArrayView query);

}
