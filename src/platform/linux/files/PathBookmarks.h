#pragma once

#include "platform/FolderBookmarks.h"

namespace Quillory {

// Tokens that are a JSON object of `path`, `device` and `inode`, of which only `path` is required. A folder that is
// gone from its path is looked for by its inode among its old siblings. The scope is an open descriptor on the folder.
class PathBookmarks final : public FolderBookmarks {
public:
    // Of the folder itself when `path` leads through symbolic links. ENOTDIR when it is no folder.
    std::expected<QByteArray, SystemError> bookmark(QString const& path) const override;

    // EINVAL for a malformed token, ENOENT when the folder is nowhere to be found.
    std::expected<Resolved, SystemError> resolve(QByteArray const& bookmark) const override;

    Registration startAccess(QString const& path) override;
    bool isReadable(QString const& path) const override;
};

}
