#pragma once

#include "text/TextRange.h"

#include <QString>

// The boundaries of characters, words and lines in a text, at a cost that does not go with the text's length.
namespace Quillory::TextBoundaries {

// A character is what a person takes for one.
qsizetype afterCharacter(QString const& text, qsizetype position);
qsizetype beforeCharacter(QString const& text, qsizetype position);

// The word, the blanks or the symbol that the character at the position belongs to; empty at a line's end.
TextRange wordAt(QString const& text, qsizetype position);
// The start of the next word, and of this or the previous one: where word steps go.
qsizetype nextWord(QString const& text, qsizetype position);
qsizetype previousWord(QString const& text, qsizetype position);

// From one line feed or U+2028 to the next, which does not belong to it.
TextRange writtenLineAt(QString const& text, qsizetype position);
// The start of this written line or the previous one, and of the next.
qsizetype previousLine(QString const& text, qsizetype position);
qsizetype nextLine(QString const& text, qsizetype position);
// where End goes in a line as laid out: not after the blank at which it wraps.
qsizetype lastPlaceOf(QString const& text, TextRange line);

}
