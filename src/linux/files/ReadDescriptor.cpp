#include "linux/files/ReadDescriptor.h"

#include <algorithm>
#include <cerrno>

#include <unistd.h>

namespace Quillory {

std::expected<QByteArray, SystemError> readDescriptor(int descriptor, qint64 expectedSize, qint64 limit)
{
    limit = std::max<qint64>(limit, 0);
    // One byte more than expected, so that the end of the file shows without growing the buffer.
    QByteArray bytes(std::min(std::max<qint64>(expectedSize, 0), limit - 1) + 1, Qt::Uninitialized);
    qint64 count = 0;
    bool isAtEnd = false;
    while (count < limit && !isAtEnd) {
        if (count == bytes.size())
            bytes.resize(std::min(std::max<qint64>(2 * count, 4096), limit));
        auto const got = read(descriptor, bytes.data() + count, static_cast<std::size_t>(bytes.size() - count));
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            return std::unexpected(SystemError::last());
        count += got;
        // Less than asked for, and as much as expected: the file ends here, and need not be asked again.
        isAtEnd = got == 0 || (count == expectedSize && count < bytes.size());
    }
    bytes.resize(count);
    return bytes;
}

}
