#include "linux/files/OpenForReading.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>

namespace Quillory {

namespace {

constexpr int flags = O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;

int systemOpenAt(int folder, char const* path, int flagsOfCall)
{
    return openat(folder, path, flagsOfCall);
}

std::expected<FileDescriptor, SystemError> opened(int number)
{
    if (number < 0)
        return std::unexpected(SystemError::last());
    return FileDescriptor(number);
}

// The document portal's file system opens its files through links of its own, with the caller's flags: there nothing can
// be opened with O_NOFOLLOW but a mere place, which then can't be exchanged any more.
std::expected<FileDescriptor, SystemError> openAtItsPlace(int folder, QByteArray const& name, OpenAt openAt)
{
    auto const place = opened(openAt(folder, name.constData(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
    if (!place)
        return std::unexpected(place.error());
    struct stat entry {};
    if (fstat(place->number(), &entry) != 0)
        return std::unexpected(SystemError::last());
    if (!S_ISREG(entry.st_mode))
        return std::unexpected(SystemError(ELOOP));
    auto const link = "/proc/self/fd/" + QByteArray::number(place->number());
    return opened(openAt(AT_FDCWD, link.constData(), flags));
}

}

std::expected<FileDescriptor, SystemError> openForReading(int folder, QByteArray const& name)
{
    return openForReading(folder, name, systemOpenAt);
}

std::expected<FileDescriptor, SystemError> openForReading(int folder, QByteArray const& name, OpenAt openAt)
{
    auto file = opened(openAt(folder, name.constData(), flags | O_NOFOLLOW));
    if (file || file.error().code() != ELOOP)
        return file;
    return openAtItsPlace(folder, name, openAt);
}

}
