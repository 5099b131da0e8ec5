#pragma once

#include <QByteArrayView>
#include <QString>
#include <QStringView>

#include <optional>

namespace Quillory {

// The text of strict UTF-8. Absent for any ill-formed sequence, a truncated tail included: nothing is repaired.
// A byte order mark stays in the text.
std::optional<QString> decodeStrictUtf8(QByteArrayView bytes);

// Whether the bytes are the strict UTF-8 of just this text. Costs no memory, and little more than looking at both.
bool isStrictUtf8Of(QByteArrayView bytes, QStringView text);

}
