#include "linux/files/PosixOpenFile.h"

#include "linux/files/ReadDescriptor.h"
#include "linux/files/RealPath.h"

#include <sys/stat.h>

namespace Quillory {

PosixOpenFile::PosixOpenFile(FileDescriptor file)
    : m_file(std::move(file))
{
}

std::expected<OpenFile::Status, SystemError> PosixOpenFile::status() const
{
    struct stat file {};
    if (fstat(m_file.number(), &file) != 0)
        return std::unexpected(SystemError::last());
    return Status { S_ISREG(file.st_mode), file.st_size };
}

std::expected<QByteArray, SystemError> PosixOpenFile::realPath() const
{
    return realPathOf(m_file.number());
}

std::expected<QByteArray, SystemError> PosixOpenFile::read(qint64 limit) const
{
    auto const known = status();
    if (!known)
        return std::unexpected(known.error());
    if (lseek(m_file.number(), 0, SEEK_SET) < 0)
        return std::unexpected(SystemError::last());
    return readDescriptor(m_file.number(), known->size, limit);
}

}
