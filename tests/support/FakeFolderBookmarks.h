#pragma once

#include "platform/FolderBookmarks.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>

#include <cerrno>
#include <map>
#include <optional>

namespace Quillory {

// Bookmarks of folders that exist in the test's mind alone. Tokens have the form of the real ones.
class FakeFolderBookmarks final : public FolderBookmarks {
public:
    enum class Access { full, readableWithoutScope, none };

    void addFolder(QString const& path, Access access = Access::full)
    {
        m_folders.insert_or_assign(path, Folder { m_nextInode++, access });
    }
    void removeFolder(QString const& path) { m_folders.erase(path); }
    void renameFolder(QString const& from, QString const& to)
    {
        m_folders.insert_or_assign(to, m_folders.at(from));
        m_folders.erase(from);
    }

    // What each bookmark that follows fails with; absent makes it well again.
    void failBookmark(std::optional<SystemError> error) { m_bookmarkError = error; }

    // The scopes that are open now, in the order in which they were opened.
    QStringList const& openScopes() const { return m_open; }
    // "start PATH" and "stop PATH", in order. A refused start is not among them.
    QStringList const& scopeEvents() const { return m_events; }

    std::expected<QByteArray, SystemError> bookmark(QString const& path) const override
    {
        auto const found = m_folders.find(path);
        if (m_bookmarkError || found == m_folders.end())
            return std::unexpected(m_bookmarkError.value_or(SystemError(ENOENT)));
        QJsonObject const token { { QStringLiteral("path"), path }, { QStringLiteral("inode"), found->second.inode } };
        return QJsonDocument(token).toJson();
    }

    std::expected<Resolved, SystemError> resolve(QByteArray const& bookmark) const override
    {
        auto const token = QJsonDocument::fromJson(bookmark).object();
        auto const path = token.value(QStringLiteral("path")).toString();
        auto const inode = token.value(QStringLiteral("inode"));
        if (!path.startsWith(u'/') || !(inode.isUndefined() || inode.isDouble()))
            return std::unexpected(SystemError(EINVAL));
        auto const found = m_folders.find(path);
        if (found != m_folders.end())
            return Resolved { path, inode.isDouble() && inode.toInteger() != found->second.inode };
        auto const parentOf = [](QString const& of) { return of.left(of.lastIndexOf(u'/')); };
        for (auto const& [sibling, folder] : m_folders) {
            if (parentOf(sibling) == parentOf(path) && inode.isDouble() && folder.inode == inode.toInteger())
                return Resolved { sibling, true };
        }
        return std::unexpected(SystemError(ENOENT));
    }

    Registration startAccess(QString const& path) override
    {
        auto const found = m_folders.find(path);
        if (found == m_folders.end() || found->second.access != Access::full)
            return {};
        m_open << path;
        m_events << QStringLiteral("start ") + path;
        return Registration([this, path] {
            m_open.removeOne(path);
            m_events << QStringLiteral("stop ") + path;
        });
    }

    bool isReadable(QString const& path) const override
    {
        auto const found = m_folders.find(path);
        return found != m_folders.end() && found->second.access != Access::none;
    }

private:
    struct Folder {
        qint64 inode = 0;
        Access access = Access::full;
    };

    std::map<QString, Folder> m_folders;
    qint64 m_nextInode = 1;
    std::optional<SystemError> m_bookmarkError;
    QStringList m_open;
    QStringList m_events;
};

}
