#include "linux/files/PosixOpenFolder.h"

#include "linux/files/FolderNames.h"
#include "linux/files/OpenForReading.h"
#include "linux/files/PosixOpenFile.h"
#include "linux/files/ReadDescriptor.h"
#include "linux/files/RealPath.h"

#include <QFile>

#include <algorithm>
#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>

namespace Quillory {

PosixOpenFolder::PosixOpenFolder(FileDescriptor folder)
    : m_folder(std::move(folder))
{
}

std::expected<std::unique_ptr<OpenFolder>, SystemError> PosixOpenFolder::open(QString const& path)
{
    FileDescriptor folder(::open(QFile::encodeName(path).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!folder.isOpen())
        return std::unexpected(SystemError::last());
    return std::unique_ptr<OpenFolder>(new PosixOpenFolder(std::move(folder)));
}

std::expected<std::vector<QByteArray>, SystemError> PosixOpenFolder::names() const
{
    auto names = namesInFolder(m_folder.number());
    if (names)
        std::erase_if(*names, [](QByteArray const& name) { return name.startsWith('.'); });
    return names;
}

std::expected<OpenFolder::EntryStatus, SystemError> PosixOpenFolder::status(QByteArray const& name) const
{
    if (!isNameOfChild(name))
        return std::unexpected(SystemError(EINVAL));
    struct stat entry {};
    if (fstatat(m_folder.number(), name.constData(), &entry, AT_SYMLINK_NOFOLLOW) != 0)
        return std::unexpected(SystemError::last());
    return EntryStatus { S_ISREG(entry.st_mode), S_ISLNK(entry.st_mode), entry.st_size };
}

std::expected<std::optional<QByteArray>, SystemError> PosixOpenFolder::read(QByteArray const& name, qint64 limit) const
{
    if (!isNameOfChild(name))
        return std::unexpected(SystemError(EINVAL));
    auto const file = openForReading(m_folder.number(), name);
    if (!file) {
        // A socket, or a device that isn't there, answers so; a regular file never does.
        if (file.error().code() == ENXIO || file.error().code() == ENODEV)
            return std::nullopt;
        return std::unexpected(file.error());
    }
    struct stat entry {};
    if (fstat(file->number(), &entry) != 0)
        return std::unexpected(SystemError::last());
    if (!S_ISREG(entry.st_mode))
        return std::nullopt;
    auto bytes = readDescriptor(file->number(), entry.st_size, limit);
    if (!bytes)
        return std::unexpected(bytes.error());
    return std::move(*bytes);
}

std::expected<QByteArray, SystemError> PosixOpenFolder::realPath() const
{
    return realPathOf(m_folder.number());
}

std::expected<QByteArray, SystemError> PosixOpenFolder::realPath(QByteArray const& path) const
{
    if (path.isEmpty() || path.startsWith('/') || path.contains('\0'))
        return std::unexpected(SystemError(EINVAL));
    FileDescriptor const place(openat(m_folder.number(), path.constData(), O_PATH | O_CLOEXEC));
    if (!place.isOpen())
        return std::unexpected(SystemError::last());
    return realPathOf(place.number());
}

std::expected<std::unique_ptr<OpenFile>, SystemError> PosixOpenFolder::open(QByteArray const& path) const
{
    auto names = path.split('/');
    if (!std::ranges::all_of(names, isNameOfChild))
        return std::unexpected(SystemError(EINVAL));
    // Step by step: a single call would follow links in all names but the last.
    auto const last = names.takeLast();
    FileDescriptor folder;
    for (auto const& name : names) {
        auto const parent = folder.isOpen() ? folder.number() : m_folder.number();
        FileDescriptor below(openat(parent, name.constData(), O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
        if (!below.isOpen())
            return std::unexpected(SystemError::last());
        folder = std::move(below);
    }
    auto file = openForReading(folder.isOpen() ? folder.number() : m_folder.number(), last);
    if (!file)
        return std::unexpected(file.error());
    return std::make_unique<PosixOpenFile>(*std::move(file));
}

}
