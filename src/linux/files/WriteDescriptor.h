#pragma once

#include "platform/SystemError.h"

#include <QByteArray>

#include <expected>

namespace Quillory {

// Writes all of `bytes` where the descriptor stands.
std::expected<void, SystemError> writeDescriptor(int descriptor, QByteArray const& bytes);

}
