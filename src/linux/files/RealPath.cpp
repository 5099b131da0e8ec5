#include "linux/files/RealPath.h"

#include <cerrno>

#include <climits>
#include <sys/stat.h>
#include <unistd.h>

namespace Quillory {

std::expected<QByteArray, SystemError> realPathOf(int descriptor)
{
    auto const link = "/proc/self/fd/" + QByteArray::number(descriptor);
    QByteArray path(PATH_MAX, Qt::Uninitialized);
    while (true) {
        auto const length = readlink(link.constData(), path.data(), static_cast<std::size_t>(path.size()));
        if (length < 0)
            return std::unexpected(SystemError::last());
        if (length < path.size()) {
            path.truncate(length);
            break;
        }
        path.resize(2 * path.size());
    }
    // The path of what was removed ends in words that a name may end in as well, so the count of links is asked.
    struct stat file {};
    if (fstat(descriptor, &file) != 0)
        return std::unexpected(SystemError::last());
    if (file.st_nlink == 0)
        return std::unexpected(SystemError(ENOENT));
    return path;
}

}
