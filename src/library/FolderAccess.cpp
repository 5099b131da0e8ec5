#include "library/FolderAccess.h"

#include <cerrno>

namespace Quillory {

namespace {

QString bookmarkKey()
{
    return QStringLiteral("libraryBookmark");
}

}

FolderAccess::FolderAccess(UserDefaults& defaults, FolderBookmarks& bookmarks)
    : m_defaults(defaults)
    , m_bookmarks(bookmarks)
{
}

bool FolderAccess::isStored() const
{
    return m_defaults.get<QByteArray>(bookmarkKey()).has_value();
}

void FolderAccess::release()
{
    m_scope.end();
    m_url.reset();
}

std::expected<Registration, SystemError> FolderAccess::startAccess(QString const& path)
{
    auto scope = m_bookmarks.startAccess(path);
    if (!scope.isActive() && !m_bookmarks.isReadable(path))
        return std::unexpected(SystemError(EACCES));
    return scope;
}

std::expected<std::optional<QString>, SystemError> FolderAccess::restore()
{
    auto const stored = m_defaults.get<QByteArray>(bookmarkKey());
    if (!stored)
        return std::nullopt;
    auto const resolved = m_bookmarks.resolve(*stored);
    if (!resolved)
        return std::unexpected(resolved.error());

    release();
    auto scope = startAccess(resolved->path);
    if (!scope)
        return std::unexpected(scope.error());
    m_scope = *std::move(scope);
    m_url = resolved->path;

    if (resolved->isStale) {
        auto const fresh = m_bookmarks.bookmark(resolved->path);
        if (!fresh)
            return std::unexpected(fresh.error());
        m_defaults.setValue(bookmarkKey(), *fresh);
    }
    return m_url;
}

std::expected<void, SystemError> FolderAccess::remember(QString const& path)
{
    auto scope = startAccess(path);
    if (!scope)
        return std::unexpected(scope.error());
    auto const bookmark = m_bookmarks.bookmark(path);
    if (!bookmark)
        return std::unexpected(bookmark.error());

    m_defaults.setValue(bookmarkKey(), *bookmark);
    release();
    m_scope = *std::move(scope);
    // The folder itself where `path` leads through links: what is kept beside its path must hold after a restore too.
    auto const itself = m_bookmarks.resolve(*bookmark);
    m_url = itself ? itself->path : path;
    return {};
}

}
