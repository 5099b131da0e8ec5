#pragma once

#include <QStringView>

namespace Quillory {

// How many Unicode scalar values the text has. An unpaired surrogate counts as one.
qsizetype scalarCount(QStringView text);

// The Unicode White_Space property, which has all newlines and neither U+200B nor U+FEFF.
bool isWhiteSpace(char32_t scalar);

// General category Cc or Cf.
bool isControl(char32_t scalar);

// Calls `visit` with each scalar of the text, in order; an unpaired surrogate stands for itself.
template<typename Visit>
void forEachScalar(QStringView text, Visit visit)
{
    for (qsizetype unit = 0; unit < text.size(); ++unit) {
        char32_t scalar = text[unit].unicode();
        if (text[unit].isHighSurrogate() && unit + 1 < text.size() && text[unit + 1].isLowSurrogate()) {
            scalar = QChar::surrogateToUcs4(text[unit], text[unit + 1]);
            ++unit;
        }
        visit(scalar);
    }
}

// Nothing but white space and newlines.
bool isBlank(QStringView text);

}
