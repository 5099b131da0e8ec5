#include "platform/linux/files/PosixFileSystem.h"

#include "platform/linux/files/PosixOpenFolder.h"

namespace Quillory {

std::expected<std::unique_ptr<OpenFolder>, SystemError> PosixFileSystem::openFolder(QString const& path) const
{
    return PosixOpenFolder::open(path);
}

}
