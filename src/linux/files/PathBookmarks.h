#pragma once

#include "platform/FolderBookmarks.h"

namespace Quillory {

// Tokens that are a JSON object of `path`, `inode` and `birthTime`, of which only `path` is required. Where nothing is at
// the path, a sibling of the same inode and birth time is the folder, renamed. The scope is a check and holds nothing
// open, so that the drive can be ejected. A drive that does not answer within a moment counts as healthy.
class PathBookmarks final : public FolderBookmarks {
public:
    // Of the folder itself when `path` leads through symbolic links. ENOTDIR when it is no folder, ETIMEDOUT when nothing
    // answers.
    std::expected<QByteArray, SystemError> bookmark(QString const& path) const override;

    // EINVAL for a malformed token, ENOENT when the folder is nowhere to be found.
    std::expected<Resolved, SystemError> resolve(QByteArray const& bookmark) const override;

    Registration startAccess(QString const& path) override;
    bool isReadable(QString const& path) const override;
};

}
