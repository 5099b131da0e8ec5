#include "linux/files/PosixInstallFolder.h"

#include "linux/files/FolderNames.h"
#include "linux/files/WriteDescriptor.h"

#include <QFile>

#include <cerrno>

#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>

namespace Quillory {

namespace {

constexpr mode_t fileMode = 0644;
constexpr mode_t folderMode = 0755;

std::expected<void, SystemError> answer(int result)
{
    if (result != 0)
        return std::unexpected(SystemError::last());
    return {};
}

// FAT answers with the first, network drives and those in user space with the others.
bool meansNoHardLinks(SystemError const& error)
{
    return error.code() == EPERM || error.code() == EOPNOTSUPP || error.code() == ENOSYS;
}

class PosixNewFile final : public InstallFolder::NewFile {
public:
    explicit PosixNewFile(FileDescriptor file)
        : m_file(std::move(file))
    {
    }

    std::expected<void, SystemError> write(QByteArray const& bytes) override
    {
        return writeDescriptor(m_file.number(), bytes);
    }

    std::expected<void, SystemError> close() override
    {
        // Some file systems find out here that the disk is full.
        auto const synced = answer(fsync(m_file.number()));
        auto const closed = answer(::close(m_file.release()));
        return synced ? closed : synced;
    }

private:
    FileDescriptor m_file;
};

}

PosixInstallFolder::PosixInstallFolder(FileDescriptor folder)
    : m_folder(std::move(folder))
{
}

std::expected<std::unique_ptr<InstallFolder>, SystemError> PosixInstallFolder::open(QString const& path)
{
    FileDescriptor folder(::open(QFile::encodeName(path).constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!folder.isOpen())
        return std::unexpected(SystemError::last());
    return std::unique_ptr<InstallFolder>(new PosixInstallFolder(std::move(folder)));
}

std::expected<bool, SystemError> PosixInstallFolder::isFolder(QByteArray const& name) const
{
    if (!isNameOfChild(name))
        return std::unexpected(SystemError(EINVAL));
    struct stat entry {};
    if (fstatat(m_folder.number(), name.constData(), &entry, AT_SYMLINK_NOFOLLOW) != 0)
        return std::unexpected(SystemError::last());
    return S_ISDIR(entry.st_mode);
}

std::expected<void, SystemError> PosixInstallFolder::makeFolder(QByteArray const& name)
{
    if (!isNameOfChild(name))
        return std::unexpected(SystemError(EINVAL));
    return answer(mkdirat(m_folder.number(), name.constData(), folderMode));
}

std::expected<std::unique_ptr<InstallFolder::NewFile>, SystemError> PosixInstallFolder::createFile(
    QByteArray const& name)
{
    if (!isNameOfChild(name))
        return std::unexpected(SystemError(EINVAL));
    FileDescriptor file(
        openat(m_folder.number(), name.constData(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, fileMode));
    if (!file.isOpen())
        return std::unexpected(SystemError::last());
    return std::make_unique<PosixNewFile>(std::move(file));
}

std::expected<void, SystemError> PosixInstallFolder::publish(QByteArray const& name, QByteArray const& newName)
{
    if (!isNameOfChild(name) || !isNameOfChild(newName))
        return std::unexpected(SystemError(EINVAL));
    auto const folder = m_folder.number();
    auto const linked = answer(linkat(folder, name.constData(), folder, newName.constData(), 0));
    if (linked || !meansNoHardLinks(linked.error()))
        return linked;
    auto const renamed = answer(renameat2(folder, name.constData(), folder, newName.constData(), RENAME_NOREPLACE));
    // No third way would never replace a file.
    return renamed || renamed.error().code() == EEXIST ? renamed : linked;
}

std::expected<void, SystemError> PosixInstallFolder::remove(QByteArray const& name)
{
    if (!isNameOfChild(name))
        return std::unexpected(SystemError(EINVAL));
    return answer(unlinkat(m_folder.number(), name.constData(), 0));
}

}
