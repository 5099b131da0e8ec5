#pragma once

#include "platform/FileSystem.h"

namespace Quillory {

// The machine's own files.
class PosixFileSystem final : public FileSystem {
public:
    std::expected<std::unique_ptr<OpenFolder>, SystemError> openFolder(QString const& path) const override;
    std::expected<std::vector<QByteArray>, SystemError> everyName(QString const& path) const override;
    std::expected<std::unique_ptr<InstallFolder>, SystemError> openForInstalling(QString const& path) const override;
};

}
