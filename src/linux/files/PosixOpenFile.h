#pragma once

#include "linux/files/FileDescriptor.h"
#include "platform/OpenFile.h"

namespace Quillory {

// A file by its descriptor.
class PosixOpenFile final : public OpenFile {
public:
    explicit PosixOpenFile(FileDescriptor file);

    std::expected<Status, SystemError> status() const override;
    std::expected<QByteArray, SystemError> realPath() const override;
    std::expected<QByteArray, SystemError> read(qint64 limit) const override;

private:
    FileDescriptor m_file;
};

}
