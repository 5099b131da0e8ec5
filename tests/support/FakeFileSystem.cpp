#include "support/FakeFileSystem.h"

#include <QList>

#include <algorithm>
#include <cerrno>
#include <mutex>
#include <utility>

namespace Quillory {

namespace {

std::unexpected<SystemError> failure(int error)
{
    return std::unexpected(SystemError(error));
}

bool isNameOfChild(QByteArray const& name)
{
    return !name.isEmpty() && name != "." && name != ".." && !name.contains('/') && !name.contains('\0');
}

std::expected<QByteArray, SystemError> readFrom(FakeFileSystem::Entry const& entry, qint64 limit)
{
    if (entry.readError)
        return failure(*entry.readError);
    return entry.contents.first(std::min<qsizetype>(entry.contents.size(), limit));
}

}

struct FakeFileSystem::Folder {
    std::mutex oneReadAtATime;
    QByteArray path;
    std::map<QByteArray, Entry> entries; // by the path from here
    std::map<QByteArray, int> reads;
    int opens = 0;
    int listingError = 0;
    bool isRemoved = false;

    // Whether there is something below it.
    bool has(QByteArray const& folder) const
    {
        auto const next = entries.lower_bound(folder + '/');
        return next != entries.end() && next->first.startsWith(folder + '/');
    }

    std::expected<Entry*, SystemError> find(QByteArray const& name)
    {
        auto const found = entries.find(name);
        if (found == entries.end())
            return failure(ENOENT);
        return &found->second;
    }

    // Of the folder, or of the one below it whose names begin with `prefix`.
    std::expected<std::vector<QByteArray>, SystemError> everyName(QByteArray const& prefix) const
    {
        if (isRemoved || listingError)
            return failure(isRemoved ? ENOENT : listingError);
        std::vector<QByteArray> names;
        // Last name first: nobody may rely on an order.
        for (auto entry = entries.rbegin(); entry != entries.rend(); ++entry) {
            if (entry->first.startsWith(prefix) && entry->first.indexOf('/', prefix.size()) < 0)
                names.push_back(entry->first.sliced(prefix.size()));
        }
        return names;
    }
};

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
        if (m_entry.realPathOnceOpen)
            return *m_entry.realPathOnceOpen;
        if (!m_folder->entries.contains(m_path))
            return failure(ENOENT);
        return m_folder->path + '/' + m_path;
    }

    std::expected<QByteArray, SystemError> read(qint64 limit) const override
    {
        ++m_folder->reads[m_path];
        return readFrom(m_entry, limit);
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
        auto const found = child(name);
        if (!found)
            return std::unexpected(found.error());
        auto& entry = **found;
        if (entry.statusError)
            return failure(*entry.statusError);
        EntryStatus status { entry.kind == Kind::regular, entry.kind == Kind::symbolicLink, entry.contents.size() };
        if (entry.hidesSize)
            status.size.reset();
        if (entry.contentsAfterStatus)
            entry.contents = *std::exchange(entry.contentsAfterStatus, std::nullopt);
        if (entry.kindAfterStatus)
            entry.kind = *std::exchange(entry.kindAfterStatus, std::nullopt);
        if (entry.vanishesAfterStatus)
            m_folder->entries.erase(name);
        return status;
    }

    std::expected<std::optional<QByteArray>, SystemError> read(QByteArray const& name, qint64 limit) const override
    {
        std::lock_guard const lock(m_folder->oneReadAtATime);
        ++m_folder->reads[name];
        auto const found = child(name);
        if (!found)
            return std::unexpected(found.error());
        auto const kind = (*found)->kind;
        if (kind == Kind::symbolicLink)
            return failure(ELOOP);
        if (kind != Kind::regular)
            return std::nullopt;
        return readFrom(**found, limit);
    }

    std::expected<QByteArray, SystemError> realPath() const override { return m_folder->path; }

    std::expected<QByteArray, SystemError> realPath(QByteArray const& path) const override
    {
        if (path.isEmpty() || path.startsWith('/') || path.contains('\0'))
            return failure(EINVAL);
        auto pending = path.split('/');
        auto at = m_folder->path;
        auto const home = m_folder->path + '/';
        for (int links = 0; !pending.isEmpty();) {
            auto const name = pending.takeFirst();
            if (name.isEmpty() || name == ".")
                continue;
            if (name == "..") {
                at.truncate(std::max<qsizetype>(at.lastIndexOf('/'), 0));
                continue;
            }
            auto const next = at + '/' + name;
            auto const entry = m_folder->find(next.mid(home.size()));
            if (!next.startsWith(home)) {
                at = next; // what lies outside is taken to be there
            } else if (entry && (*entry)->kind == Kind::symbolicLink) {
                if (++links > 40)
                    return failure(ELOOP);
                if ((*entry)->contents.startsWith('/'))
                    at.clear();
                pending = (*entry)->contents.split('/') + pending;
            } else if (entry || m_folder->has(next.mid(home.size()))) {
                at = next;
            } else {
                return failure(ENOENT);
            }
        }
        return at.isEmpty() ? QByteArray("/") : at;
    }

    std::expected<std::unique_ptr<OpenFile>, SystemError> open(QByteArray const& path) const override
    {
        QByteArray at;
        for (auto const& name : path.split('/')) {
            if (!isNameOfChild(name))
                return failure(EINVAL);
            at += at.isEmpty() ? name : '/' + name;
            auto const entry = m_folder->find(at);
            if (entry && (*entry)->kind == Kind::symbolicLink)
                return failure(ELOOP);
            if (!entry && !m_folder->has(at))
                return failure(ENOENT);
        }
        if (!m_folder->entries.contains(path))
            m_folder->entries[path].kind = Kind::folder;
        return std::make_unique<File>(m_folder, path);
    }

private:
    std::expected<Entry*, SystemError> child(QByteArray const& name) const
    {
        if (!isNameOfChild(name))
            return failure(EINVAL);
        return m_folder->find(name);
    }

    std::shared_ptr<Folder> m_folder;
};

class FakeFileSystem::NewFile final : public InstallFolder::NewFile {
public:
    NewFile(FakeFileSystem const& files, std::shared_ptr<Folder> folder, QByteArray path)
        : m_files(files)
        , m_folder(std::move(folder))
        , m_path(std::move(path))
    {
    }

    std::expected<void, SystemError> write(QByteArray const& bytes) override
    {
        auto const allowed = m_files.step(InstallStep::write, m_path);
        m_folder->entries[m_path].contents += allowed ? bytes : bytes.first(bytes.size() / 2);
        return allowed;
    }

    std::expected<void, SystemError> close() override { return m_files.step(InstallStep::close, m_path); }

private:
    FakeFileSystem const& m_files;
    std::shared_ptr<Folder> m_folder;
    QByteArray m_path;
};

class FakeFileSystem::Install final : public InstallFolder {
public:
    Install(FakeFileSystem const& files, Place place)
        : m_files(files)
        , m_folder(std::move(place.folder))
        , m_prefix(std::move(place.prefix))
    {
    }

    std::expected<bool, SystemError> isFolder(QByteArray const& name) const override
    {
        if (auto const ready = begin(InstallStep::look, name); !ready)
            return std::unexpected(ready.error());
        auto const found = m_folder->find(m_prefix + name);
        if (!found)
            return std::unexpected(found.error());
        return (*found)->kind == Kind::folder;
    }

    std::expected<void, SystemError> makeFolder(QByteArray const& name) override
    {
        auto const ready = begin(InstallStep::makeFolder, name);
        return ready ? insert(name, { .kind = Kind::folder }) : ready;
    }

    std::expected<std::unique_ptr<InstallFolder::NewFile>, SystemError> createFile(QByteArray const& name) override
    {
        auto const ready = begin(InstallStep::create, name);
        if (auto const made = ready ? insert(name, {}) : ready; !made)
            return std::unexpected(made.error());
        return std::make_unique<FakeFileSystem::NewFile>(m_files, m_folder, m_prefix + name);
    }

    std::expected<void, SystemError> publish(QByteArray const& name, QByteArray const& newName) override
    {
        if (auto const ready = begin(InstallStep::publish, newName); !ready)
            return ready;
        auto const source = isNameOfChild(name) ? m_folder->find(m_prefix + name) : failure(EINVAL);
        if (!source)
            return std::unexpected(source.error());
        return insert(newName, **source);
    }

    std::expected<void, SystemError> remove(QByteArray const& name) override
    {
        auto const ready = begin(InstallStep::remove, name);
        if (ready && m_folder->entries.erase(m_prefix + name) == 0)
            return failure(ENOENT);
        return ready;
    }

private:
    std::expected<void, SystemError> begin(InstallStep step, QByteArray const& name) const
    {
        if (!isNameOfChild(name))
            return failure(EINVAL);
        return m_files.step(step, name);
    }

    std::expected<void, SystemError> insert(QByteArray const& name, Entry entry)
    {
        if (!m_folder->entries.emplace(m_prefix + name, std::move(entry)).second)
            return failure(EEXIST);
        return {};
    }

    FakeFileSystem const& m_files;
    std::shared_ptr<Folder> m_folder;
    QByteArray m_prefix;
};

std::expected<void, SystemError> FakeFileSystem::step(InstallStep step, QByteArray const& name) const
{
    if (int const error = m_installHook ? m_installHook(step, name) : 0)
        return failure(error);
    return {};
}

FakeFileSystem::Folder& FakeFileSystem::folder(QString const& path)
{
    auto& folder = m_folders[path];
    if (!folder)
        folder = std::make_shared<Folder>();
    folder->path = path.toUtf8();
    return *folder;
}

std::shared_ptr<FakeFileSystem::Folder> FakeFileSystem::existing(QString const& path) const
{
    auto const found = m_folders.find(path);
    return found == m_folders.end() ? nullptr : found->second;
}

void FakeFileSystem::removeFolder(QString const& path)
{
    folder(path).isRemoved = true;
    folder(path).entries.clear();
    m_folders.erase(path);
}

void FakeFileSystem::failListing(QString const& path, int error)
{
    folder(path).listingError = error;
}

void FakeFileSystem::put(QString const& path, QByteArray const& name, Entry entry)
{
    folder(path).entries.insert_or_assign(name, std::move(entry));
}

void FakeFileSystem::remove(QString const& path, QByteArray const& name)
{
    folder(path).entries.erase(name);
}

std::optional<FakeFileSystem::Entry> FakeFileSystem::entry(QString const& path, QByteArray const& name) const
{
    auto const asked = existing(path);
    return asked && asked->entries.contains(name) ? std::optional(asked->entries.at(name)) : std::nullopt;
}

int FakeFileSystem::opens(QString const& path) const
{
    auto const asked = existing(path);
    return asked ? asked->opens : 0;
}

int FakeFileSystem::reads(QString const& path, QByteArray const& name) const
{
    int sum = 0;
    for (auto const& [read, count] : existing(path)->reads)
        sum += name.isEmpty() || read == name ? count : 0;
    return sum;
}

std::expected<FakeFileSystem::Place, SystemError> FakeFileSystem::open(QString const& path) const
{
    Place place { existing(path), {} };
    if (!place.folder) {
        auto const cut = path.lastIndexOf(u'/');
        auto const name = path.sliced(cut + 1).toUtf8();
        auto const inParent = entry(path.first(cut), name);
        if (!inParent || inParent->kind != Kind::folder)
            return failure(inParent ? ENOTDIR : ENOENT);
        place = { existing(path.first(cut)), name + '/' };
    }
    ++place.folder->opens;
    return place;
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
    auto const ready = step(InstallStep::list, {});
    auto const opened = ready ? open(path) : std::unexpected(ready.error());
    if (!opened)
        return std::unexpected(opened.error());
    return opened->folder->everyName(opened->prefix);
}

std::expected<std::unique_ptr<InstallFolder>, SystemError> FakeFileSystem::openForInstalling(QString const& path) const
{
    auto const ready = step(InstallStep::open, {});
    auto opened = ready ? open(path) : std::unexpected(ready.error());
    if (!opened)
        return std::unexpected(opened.error());
    return std::make_unique<Install>(*this, *std::move(opened));
}

}
