#pragma once

#include "linux/files/FileDescriptor.h"
#include "platform/InstallFolder.h"

#include <QString>

namespace Quillory {

// A folder by its descriptor: everything is made relative to it.
class PosixInstallFolder final : public InstallFolder {
public:
    static std::expected<std::unique_ptr<InstallFolder>, SystemError> open(QString const& path);

    std::expected<bool, SystemError> isFolder(QByteArray const& name) const override;
    std::expected<void, SystemError> makeFolder(QByteArray const& name) override;
    std::expected<std::unique_ptr<NewFile>, SystemError> createFile(QByteArray const& name) override;
    std::expected<void, SystemError> publish(QByteArray const& name, QByteArray const& newName) override;
    std::expected<void, SystemError> remove(QByteArray const& name) override;

private:
    explicit PosixInstallFolder(FileDescriptor folder);

    FileDescriptor m_folder;
};

}
