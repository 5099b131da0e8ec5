#pragma once

#include "platform/SystemError.h"

#include <QByteArray>

#include <expected>

namespace Quillory {

// The present path of an open file or folder. Fails with ENOENT when it has been removed.
std::expected<QByteArray, SystemError> realPathOf(int descriptor);

}
