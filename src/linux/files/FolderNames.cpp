#include "linux/files/FolderNames.h"

#include <array>

#include <dirent.h>
#include <unistd.h>

namespace Quillory {

std::expected<std::vector<QByteArray>, SystemError> namesInFolder(int descriptor)
{
    if (lseek(descriptor, 0, SEEK_SET) < 0)
        return std::unexpected(SystemError::last());
    std::vector<QByteArray> names;
    // Not readdir: it shows a folder that was removed as an empty one.
    alignas(dirent64) std::array<char, 32768> buffer;
    while (true) {
        auto const length = getdents64(descriptor, buffer.data(), buffer.size());
        if (length < 0)
            return std::unexpected(SystemError::last());
        if (length == 0)
            return names;
        for (auto const* at = buffer.data(); at < buffer.data() + length;) {
            auto const* entry = reinterpret_cast<dirent64 const*>(at);
            QByteArray const name(entry->d_name);
            if (name != "." && name != "..")
                names.push_back(name);
            at += entry->d_reclen;
        }
    }
}

bool isNameOfChild(QByteArray const& name)
{
    return !name.isEmpty() && name != "." && name != ".." && !name.contains('/') && !name.contains('\0');
}

}
