#pragma once

#include "linux/files/FileDescriptor.h"

#include "platform/SystemError.h"

#include <QByteArray>

#include <expected>

namespace Quillory {

// The system's openat, which a test may replace.
using OpenAt = int (*)(int folder, char const* path, int flags);

// Opens what stands in a folder under a name. Follows no link, and waits for no other end of a fifo.
std::expected<FileDescriptor, SystemError> openForReading(int folder, QByteArray const& name);
std::expected<FileDescriptor, SystemError> openForReading(int folder, QByteArray const& name, OpenAt openAt);

}
