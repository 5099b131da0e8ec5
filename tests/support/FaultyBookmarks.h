#pragma once

#include "linux/files/PathBookmarks.h"

#include <QStringList>

namespace Quillory {

// The machine's own bookmarks, which fail where a test asks for it, and a note of each scope that begins and ends.
class FaultyBookmarks final : public FolderBookmarks {
public:
    std::optional<SystemError> bookmarkError;
    bool refusesScopes = false;
    QStringList scopes; // "start PATH" and "stop PATH", in order

    std::expected<QByteArray, SystemError> bookmark(QString const& path) const override
    {
        return bookmarkError ? std::unexpected(*bookmarkError) : m_real.bookmark(path);
    }
    std::expected<Resolved, SystemError> resolve(QByteArray const& bookmark) const override
    {
        return m_real.resolve(bookmark);
    }
    Registration startAccess(QString const& path) override
    {
        auto scope = refusesScopes ? Registration() : m_real.startAccess(path);
        if (!scope.isActive())
            return {};
        scopes << QStringLiteral("start ") + path;
        return Registration([this, path, scope = std::move(scope)]() mutable {
            scope.end();
            scopes << QStringLiteral("stop ") + path;
        });
    }
    bool isReadable(QString const& path) const override { return m_real.isReadable(path); }

private:
    PathBookmarks m_real;
};

}
