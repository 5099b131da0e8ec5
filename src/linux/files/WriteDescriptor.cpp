#include "linux/files/WriteDescriptor.h"

#include <cerrno>

#include <unistd.h>

namespace Quillory {

std::expected<void, SystemError> writeDescriptor(int descriptor, QByteArray const& bytes)
{
    for (qsizetype written = 0; written < bytes.size();) {
        auto const count = write(
            descriptor, bytes.constData() + written, static_cast<std::size_t>(bytes.size() - written));
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return std::unexpected(SystemError::last());
        written += count;
    }
    return {};
}

}
