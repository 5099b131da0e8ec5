#pragma once

#include "platform/FolderBookmarks.h"

#include <QStringList>

#include <map>
#include <optional>
#include <set>
#include <vector>

namespace Quillory {

// Bookmarks of folders that exist in the test's mind alone. Tokens have the form of the real ones.
class FakeFolderBookmarks final : public FolderBookmarks {
public:
    enum class Access { full, readableWithoutScope, none };

    void addFolder(QString const& path, Access access = Access::full);
    void removeFolder(QString const& path);
    void renameFolder(QString const& from, QString const& to);

    // What each call that follows fails with; absent makes it well again.
    void failBookmark(std::optional<SystemError> error) { m_bookmarkError = error; }
    void failResolve(std::optional<SystemError> error) { m_resolveError = error; }

    // The scopes that are open now, in the order in which they were opened.
    QStringList openScopes() const;
    // "start PATH" and "stop PATH", in order. A refused start is not among them.
    QStringList const& scopeEvents() const { return m_events; }

    std::expected<QByteArray, SystemError> bookmark(QString const& path) const override;
    std::expected<Resolved, SystemError> resolve(QByteArray const& bookmark) const override;
    Registration startAccess(QString const& path) override;
    bool isReadable(QString const& path) const override;

private:
    struct Folder {
        qint64 inode = 0;
        Access access = Access::full;
    };

    std::map<QString, Folder> m_folders;
    qint64 m_nextInode = 1;
    std::optional<SystemError> m_bookmarkError;
    std::optional<SystemError> m_resolveError;
    std::vector<QString> m_open;
    QStringList m_events;
};

}
