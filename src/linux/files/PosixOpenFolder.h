#pragma once

#include "linux/files/FileDescriptor.h"
#include "platform/FileSystem.h"

namespace Quillory {

// A folder by its descriptor: entries are reached from it and never by a path.
class PosixOpenFolder final : public OpenFolder {
public:
    static std::expected<std::unique_ptr<OpenFolder>, SystemError> open(QString const& path);

    std::expected<std::vector<QByteArray>, SystemError> names() const override;
    std::expected<EntryStatus, SystemError> status(QByteArray const& name) const override;
    std::expected<std::optional<QByteArray>, SystemError> read(QByteArray const& name, qint64 limit) const override;
    std::expected<QByteArray, SystemError> realPath() const override;
    std::expected<QByteArray, SystemError> realPath(QByteArray const& path) const override;
    std::expected<std::unique_ptr<OpenFile>, SystemError> open(QByteArray const& path) const override;

private:
    explicit PosixOpenFolder(FileDescriptor folder);

    FileDescriptor m_folder;
};

}
