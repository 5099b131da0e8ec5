#pragma once

#include "platform/SystemError.h"

#include <QByteArray>

#include <expected>

namespace Quillory {

// Where an open file or folder is by now. Fails with ENOENT when it has been removed.
std::expected<QByteArray, SystemError> realPathOf(int descriptor);

}
