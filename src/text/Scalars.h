#pragma once

#include <QStringView>

namespace Quillory {

// How many Unicode scalar values the text has. An unpaired surrogate counts as one.
qsizetype scalarCount(QStringView text);

// The Unicode White_Space property, which has all newlines and neither U+200B nor U+FEFF.
bool isWhiteSpace(char32_t scalar);

// General category Cc or Cf.
bool isControl(char32_t scalar);

// Nothing but white space and newlines.
bool isBlank(QStringView text);

}
