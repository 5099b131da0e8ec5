#include "support/FakeFolderBookmarks.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cerrno>

namespace Quillory {

namespace {

QString parentOf(QString const& path)
{
    return path.left(path.lastIndexOf(u'/'));
}

}

void FakeFolderBookmarks::addFolder(QString const& path, Access access)
{
    m_folders.insert_or_assign(path, Folder { m_nextInode++, access });
}

void FakeFolderBookmarks::removeFolder(QString const& path)
{
    m_folders.erase(path);
}

void FakeFolderBookmarks::renameFolder(QString const& from, QString const& to)
{
    m_folders.insert_or_assign(to, m_folders.at(from));
    m_folders.erase(from);
}

QStringList FakeFolderBookmarks::openScopes() const
{
    return QStringList(m_open.begin(), m_open.end());
}

std::expected<QByteArray, SystemError> FakeFolderBookmarks::bookmark(QString const& path) const
{
    if (m_bookmarkError)
        return std::unexpected(*m_bookmarkError);
    auto const found = m_folders.find(path);
    if (found == m_folders.end())
        return std::unexpected(SystemError(ENOENT));
    return QJsonDocument(
        QJsonObject { { QStringLiteral("path"), path }, { QStringLiteral("inode"), found->second.inode } })
        .toJson();
}

std::expected<FolderBookmarks::Resolved, SystemError> FakeFolderBookmarks::resolve(QByteArray const& bookmark) const
{
    if (m_resolveError)
        return std::unexpected(*m_resolveError);
    auto const token = QJsonDocument::fromJson(bookmark).object();
    auto const path = token.value(QStringLiteral("path")).toString();
    auto const inode = token.value(QStringLiteral("inode"));
    if (!path.startsWith(u'/') || !(inode.isUndefined() || inode.isDouble()))
        return std::unexpected(SystemError(EINVAL));
    auto const found = m_folders.find(path);
    if (found != m_folders.end() && (inode.isUndefined() || inode.toInteger() == found->second.inode))
        return Resolved { path, false };
    for (auto const& [sibling, folder] : m_folders) {
        if (parentOf(sibling) == parentOf(path) && inode.isDouble() && folder.inode == inode.toInteger())
            return Resolved { sibling, true };
    }
    if (found != m_folders.end())
        return Resolved { path, true };
    return std::unexpected(SystemError(ENOENT));
}

Registration FakeFolderBookmarks::startAccess(QString const& path)
{
    auto const found = m_folders.find(path);
    if (found == m_folders.end() || found->second.access != Access::full)
        return {};
    m_open.push_back(path);
    m_events << QStringLiteral("start ") + path;
    return Registration([this, path] {
        m_open.erase(std::ranges::find(m_open, path));
        m_events << QStringLiteral("stop ") + path;
    });
}

bool FakeFolderBookmarks::isReadable(QString const& path) const
{
    auto const found = m_folders.find(path);
    return found != m_folders.end() && found->second.access != Access::none;
}

}
