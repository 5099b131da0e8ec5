#pragma once

#include "platform/SystemError.h"

#include <QByteArray>

#include <expected>

namespace Quillory {

// The bytes from where the descriptor stands to the end of its file, `limit` at most. `expectedSize` is a hint that
// saves memory and calls; a file that has grown past it is read on.
std::expected<QByteArray, SystemError> readDescriptor(int descriptor, qint64 expectedSize, qint64 limit);

}
