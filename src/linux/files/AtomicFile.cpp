#include "linux/files/AtomicFile.h"

#include "linux/files/FileDescriptor.h"
#include "linux/files/ReadDescriptor.h"
#include "linux/files/WriteDescriptor.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <cstdlib>

#include <fcntl.h>
#include <sys/stat.h>

namespace Quillory {

namespace {

constexpr qint64 largestFile = 64LL * 1024 * 1024;

std::unexpected<SystemError> lastError()
{
    return std::unexpected(SystemError::last());
}

std::expected<void, SystemError> makeFolders(QString const& folder)
{
    auto const name = QFile::encodeName(folder);
    if (mkdir(name.constData(), 0700) == 0 || errno == EEXIST)
        return {};
    auto const parent = QFileInfo(folder).path();
    if (errno != ENOENT || parent == folder)
        return lastError();
    if (auto made = makeFolders(parent); !made)
        return made;
    if (mkdir(name.constData(), 0700) == 0 || errno == EEXIST)
        return {};
    return lastError();
}

std::expected<void, SystemError> writeToDisk(int descriptor, QByteArray const& contents)
{
    if (auto written = writeDescriptor(descriptor, contents); !written)
        return written;
    if (fsync(descriptor) != 0)
        return lastError();
    return {};
}

// The rename outlives a loss of power once its folder is on the disk. Not every file system can say so of a folder.
void syncFolder(QByteArray const& folder)
{
    FileDescriptor const descriptor(open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (descriptor.isOpen())
        fsync(descriptor.number());
}

}

std::expected<std::optional<QByteArray>, SystemError> readWholeFile(QString const& path)
{
    FileDescriptor const file(open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (!file.isOpen()) {
        if (errno == ENOENT)
            return std::nullopt;
        return lastError();
    }
    struct stat status {};
    if (fstat(file.number(), &status) != 0)
        return lastError();
    if (!S_ISREG(status.st_mode))
        return std::unexpected(SystemError(S_ISDIR(status.st_mode) ? EISDIR : EINVAL));
    auto bytes = readDescriptor(file.number(), status.st_size, largestFile + 1);
    if (!bytes)
        return std::unexpected(bytes.error());
    if (bytes->size() > largestFile)
        return std::unexpected(SystemError(EFBIG));
    return std::move(*bytes);
}

std::expected<void, SystemError> replaceFile(QString const& path, QByteArray const& contents)
{
    auto const real = QFileInfo(path).canonicalFilePath(); // empty where there is no file yet
    auto const target = real.isEmpty() ? path : real;
    auto const folder = QFileInfo(target).path();
    if (auto made = makeFolders(folder); !made)
        return made;

    auto temporary = QFile::encodeName(target + QStringLiteral(".XXXXXX"));
    FileDescriptor file(mkostemp(temporary.data(), O_CLOEXEC)); // with mode 0600
    if (!file.isOpen())
        return lastError();
    auto written = writeToDisk(file.number(), contents);
    if (written && rename(temporary.constData(), QFile::encodeName(target).constData()) != 0)
        written = lastError();
    if (!written) {
        unlink(temporary.constData());
        return written;
    }
    syncFolder(QFile::encodeName(folder));
    return {};
}

std::expected<QString, SystemError> setFileAside(QString const& path, QString const& suffix)
{
    for (int number = 1;; ++number) {
        auto aside = QStringLiteral("%1.%2-%3").arg(path, suffix).arg(number);
        auto const name = QFile::encodeName(aside);
        // Taking the name first makes sure that the rename replaces nothing but our own empty file.
        FileDescriptor const taken(open(name.constData(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0600));
        if (!taken.isOpen() && errno == EEXIST)
            continue;
        if (!taken.isOpen())
            return lastError();
        if (rename(QFile::encodeName(path).constData(), name.constData()) == 0)
            return aside;
        auto const error = SystemError::last();
        unlink(name.constData());
        return std::unexpected(error);
    }
}

}
