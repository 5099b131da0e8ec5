#include "support/FakeFolder.h"

#include <QList>

#include <algorithm>
#include <cerrno>
#include <numeric>
#include <ranges>
#include <utility>

namespace Quillory {

namespace {

// What `ask` says of a folder while nobody else has it; nothing of one that is not there.
template<typename Folder, typename Ask>
auto locked(std::shared_ptr<Folder> const& folder, Ask ask)
{
    using Answer = decltype(ask(*folder));
    if (!folder)
        return Answer();
    std::lock_guard const lock(folder->mutex);
    return ask(*folder);
}

}

class FakeFileSystem::File final : public OpenFile {
public:
    File(std::shared_ptr<Folder> folder, QByteArray path)
        : m_folder(std::move(folder))
        , m_path(std::move(path))
        , m_entry(m_folder->entries.at(m_path))
    {
    }

    std::expected<Status, SystemError> status() const override
    {
        Status const status { m_entry.kind == Kind::regular, m_entry.contents.size() };
        if (m_entry.contentsAfterStatus)
            m_entry.contents = *std::exchange(m_entry.contentsAfterStatus, std::nullopt);
        return status;
    }

    std::expected<QByteArray, SystemError> realPath() const override
    {
        std::lock_guard const lock(m_folder->mutex);
        if (m_entry.realPathOnceOpen)
            return *m_entry.realPathOnceOpen;
        if (!m_folder->entries.contains(m_path))
            return std::unexpected(SystemError(ENOENT));
        return m_folder->path + '/' + m_path;
    }

    std::expected<QByteArray, SystemError> read(qint64 limit) const override
    {
        std::lock_guard const lock(m_folder->mutex);
        ++m_folder->reads[m_path];
        if (m_entry.readError)
            return std::unexpected(SystemError(*m_entry.readError));
        return m_entry.contents.first(std::min<qsizetype>(m_entry.contents.size(), limit));
    }

private:
    std::shared_ptr<Folder> m_folder;
    QByteArray m_path;
    mutable Entry m_entry;
};

class FakeFileSystem::Open final : public OpenFolder {
public:
    explicit Open(std::shared_ptr<Folder> folder)
        : m_folder(std::move(folder))
    {
    }

    std::expected<std::vector<QByteArray>, SystemError> names() const override
    {
        auto names = m_folder->everyName({});
        if (names)
            std::erase_if(*names, [](QByteArray const& name) { return name.startsWith('.'); });
        return names;
    }

    std::expected<EntryStatus, SystemError> status(QByteArray const& name) const override
    {
        std::lock_guard const lock(m_folder->mutex);
        auto const found = find(name);
        if (!found)
            return std::unexpected(found.error());
        auto& entry = **found;
        if (entry.statusError)
            return std::unexpected(SystemError(*entry.statusError));
        EntryStatus status { entry.kind == Kind::regular, entry.kind == Kind::symbolicLink, entry.contents.size() };
        if (entry.hidesSize)
            status.size.reset();
        changeAfterStatus(name, entry);
        return status;
    }

    std::expected<std::optional<QByteArray>, SystemError> read(QByteArray const& name, qint64 limit) const override
    {
        std::lock_guard const lock(m_folder->mutex);
        ++m_folder->reads[name];
        auto const found = find(name);
        if (!found)
            return std::unexpected(found.error());
        auto const& entry = **found;
        if (entry.readError)
            return std::unexpected(SystemError(*entry.readError));
        if (entry.kind == Kind::symbolicLink)
            return std::unexpected(SystemError(ELOOP));
        if (entry.kind != Kind::regular)
            return std::nullopt;
        return entry.contents.first(std::min<qsizetype>(entry.contents.size(), limit));
    }

    std::expected<QByteArray, SystemError> realPath() const override
    {
        std::lock_guard const lock(m_folder->mutex);
        return m_folder->path;
    }

    std::expected<QByteArray, SystemError> realPath(QByteArray const& path) const override
    {
        std::lock_guard const lock(m_folder->mutex);
        if (path.isEmpty() || path.startsWith('/') || path.contains('\0'))
            return std::unexpected(SystemError(EINVAL));
        auto pending = path.split('/');
        auto at = m_folder->path;
        for (int links = 0; !pending.isEmpty();) {
            auto const name = pending.takeFirst();
            if (name.isEmpty() || name == ".")
                continue;
            if (name == "..") {
                at.truncate(std::max<qsizetype>(at.lastIndexOf('/'), 0));
                continue;
            }
            auto const next = at + '/' + name;
            auto const* const entry = below(next);
            if (entry && entry->kind == Kind::symbolicLink) {
                if (++links > 40)
                    return std::unexpected(SystemError(ELOOP));
                if (entry->contents.startsWith('/'))
                    at.clear();
                pending = entry->contents.split('/') + pending;
                continue;
            }
            // What lies outside is taken to be there.
            if (!entry && next.startsWith(m_folder->path + '/') && !m_folder->has(relative(next)))
                return std::unexpected(SystemError(ENOENT));
            at = next;
        }
        return at.isEmpty() ? QByteArray("/") : at;
    }

    std::expected<std::unique_ptr<OpenFile>, SystemError> open(QByteArray const& path) const override
    {
        std::lock_guard const lock(m_folder->mutex);
        QByteArray at;
        for (auto const& name : path.split('/')) {
            if (name.isEmpty() || name == "." || name == ".." || name.contains('\0'))
                return std::unexpected(SystemError(EINVAL));
            at += at.isEmpty() ? name : '/' + name;
            if (auto const entry = m_folder->entries.find(at); entry != m_folder->entries.end()) {
                if (entry->second.kind == Kind::symbolicLink)
                    return std::unexpected(SystemError(ELOOP));
            } else if (!m_folder->has(at)) {
                return std::unexpected(SystemError(ENOENT));
            }
        }
        if (!m_folder->entries.contains(path))
            m_folder->entries[path].kind = Kind::folder;
        return std::make_unique<File>(m_folder, path);
    }

private:
    QByteArray relative(QByteArray const& path) const { return path.mid(m_folder->path.size() + 1); }

    Entry const* below(QByteArray const& path) const
    {
        if (!path.startsWith(m_folder->path + '/'))
            return nullptr;
        auto const found = m_folder->entries.find(relative(path));
        return found == m_folder->entries.end() ? nullptr : &found->second;
    }

    std::expected<Entry*, SystemError> find(QByteArray const& name) const
    {
        if (!isNameOfChild(name))
            return std::unexpected(SystemError(EINVAL));
        auto const found = m_folder->entries.find(name);
        if (found == m_folder->entries.end())
            return std::unexpected(SystemError(ENOENT));
        return &found->second;
    }

    void changeAfterStatus(QByteArray const& name, Entry& entry) const
    {
        if (entry.contentsAfterStatus)
            entry.contents = *std::exchange(entry.contentsAfterStatus, std::nullopt);
        if (entry.kindAfterStatus)
            entry.kind = *std::exchange(entry.kindAfterStatus, std::nullopt);
        if (entry.vanishesAfterStatus)
            m_folder->entries.erase(name);
    }

    std::shared_ptr<Folder> m_folder;
};

std::expected<void, SystemError> FakeFileSystem::step(InstallStep step, QByteArray const& name) const
{
    int const error = m_installHook ? m_installHook(step, name) : 0;
    if (error != 0)
        return std::unexpected(SystemError(error));
    return {};
}

std::shared_ptr<FakeFileSystem::Folder> FakeFileSystem::folder(QString const& path)
{
    std::lock_guard const lock(m_mutex);
    auto& folder = m_folders[path];
    if (!folder) {
        folder = std::make_shared<Folder>();
        folder->path = path.toUtf8();
    }
    return folder;
}

std::shared_ptr<FakeFileSystem::Folder> FakeFileSystem::existing(QString const& path) const
{
    std::lock_guard const lock(m_mutex);
    auto const found = m_folders.find(path);
    return found == m_folders.end() ? nullptr : found->second;
}

void FakeFileSystem::addFolder(QString const& path)
{
    folder(path);
}

void FakeFileSystem::removeFolder(QString const& path)
{
    auto const removed = folder(path);
    std::scoped_lock const lock(m_mutex, removed->mutex);
    removed->isRemoved = true;
    removed->entries.clear();
    m_folders.erase(path);
}

void FakeFileSystem::failFolder(QString const& path, int error)
{
    locked(folder(path), [&](auto& failing) { failing.openError = error; });
}

void FakeFileSystem::failListing(QString const& path, int error)
{
    locked(folder(path), [&](auto& failing) { failing.listingError = error; });
}

void FakeFileSystem::put(QString const& path, QByteArray const& name, Entry entry)
{
    locked(folder(path), [&](auto& changed) { changed.entries.insert_or_assign(name, std::move(entry)); });
}

void FakeFileSystem::write(QString const& path, QByteArray const& name, QByteArray const& contents)
{
    put(path, name, { .contents = contents });
}

void FakeFileSystem::remove(QString const& path, QByteArray const& name)
{
    locked(folder(path), [&](auto& changed) { changed.entries.erase(name); });
}

std::optional<FakeFileSystem::Entry> FakeFileSystem::entry(QString const& path, QByteArray const& name) const
{
    return locked(existing(path), [&](auto const& asked) {
        auto const found = asked.entries.find(name);
        return found == asked.entries.end() ? std::nullopt : std::optional(found->second);
    });
}

int FakeFileSystem::opens(QString const& path) const
{
    return locked(existing(path), [](auto const& asked) { return asked.opens; });
}

int FakeFileSystem::reads(QString const& path) const
{
    return locked(existing(path), [](auto const& asked) {
        auto const counts = asked.reads | std::views::values;
        return std::accumulate(counts.begin(), counts.end(), 0);
    });
}

int FakeFileSystem::reads(QString const& path, QByteArray const& name) const
{
    return locked(existing(path), [&](auto const& asked) {
        auto const found = asked.reads.find(name);
        return found == asked.reads.end() ? 0 : found->second;
    });
}

std::expected<FakeFileSystem::Place, SystemError> FakeFileSystem::place(QString const& path) const
{
    if (auto const opened = existing(path))
        return Place { opened, {} };
    auto const cut = path.lastIndexOf(u'/');
    auto const name = path.sliced(cut + 1).toUtf8();
    auto const inParent = entry(path.first(cut), name);
    if (!inParent)
        return std::unexpected(SystemError(ENOENT));
    if (inParent->kind != Kind::folder)
        return std::unexpected(SystemError(ENOTDIR));
    return Place { existing(path.first(cut)), name + '/' };
}

std::expected<FakeFileSystem::Place, SystemError> FakeFileSystem::open(QString const& path) const
{
    auto opened = place(path);
    if (!opened)
        return opened;
    std::lock_guard const lock(opened->folder->mutex);
    if (opened->folder->openError)
        return std::unexpected(SystemError(opened->folder->openError));
    ++opened->folder->opens;
    return opened;
}

std::expected<std::unique_ptr<OpenFolder>, SystemError> FakeFileSystem::openFolder(QString const& path) const
{
    auto opened = open(path);
    if (!opened)
        return std::unexpected(opened.error());
    return std::make_unique<Open>(std::move(opened->folder));
}

std::expected<std::vector<QByteArray>, SystemError> FakeFileSystem::everyName(QString const& path) const
{
    if (auto const ready = step(InstallStep::list, {}); !ready)
        return std::unexpected(ready.error());
    auto const opened = open(path);
    if (!opened)
        return std::unexpected(opened.error());
    return opened->folder->everyName(opened->prefix);
}

}
