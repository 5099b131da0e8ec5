#include "linux/files/PosixFileSystem.h"

#include "linux/files/FileDescriptor.h"
#include "linux/files/FolderNames.h"
#include "linux/files/PosixInstallFolder.h"
#include "linux/files/PosixOpenFolder.h"

#include <QFile>

#include <fcntl.h>

namespace Quillory {

std::expected<std::unique_ptr<OpenFolder>, SystemError> PosixFileSystem::openFolder(QString const& path) const
{
    return PosixOpenFolder::open(path);
}

std::expected<std::vector<QByteArray>, SystemError> PosixFileSystem::everyName(QString const& path) const
{
    FileDescriptor const folder(open(QFile::encodeName(path).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!folder.isOpen())
        return std::unexpected(SystemError::last());
    return namesInFolder(folder.number());
}

std::expected<std::unique_ptr<InstallFolder>, SystemError> PosixFileSystem::openForInstalling(QString const& path) const
{
    return PosixInstallFolder::open(path);
}

}
