#include "support/FakeFolder.h"

#include <cerrno>
#include <utility>

namespace Quillory {

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
        std::lock_guard const lock(m_folder->mutex);
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
        std::lock_guard const lock(m_folder->mutex);
        auto const found = m_folder->entries.find(m_prefix + name);
        if (found == m_folder->entries.end())
            return std::unexpected(SystemError(ENOENT));
        return found->second.kind == Kind::folder;
    }

    std::expected<void, SystemError> makeFolder(QByteArray const& name) override
    {
        return add(InstallStep::makeFolder, name, { .kind = Kind::folder });
    }

    std::expected<std::unique_ptr<InstallFolder::NewFile>, SystemError> createFile(QByteArray const& name) override
    {
        if (auto const made = add(InstallStep::create, name, {}); !made)
            return std::unexpected(made.error());
        return std::make_unique<FakeFileSystem::NewFile>(m_files, m_folder, m_prefix + name);
    }

    std::expected<void, SystemError> link(QByteArray const& name, QByteArray const& newName) override
    {
        auto const ready = begin(InstallStep::link, newName);
        if (!ready || !isNameOfChild(name))
            return ready ? std::unexpected(SystemError(EINVAL)) : ready;
        std::lock_guard const lock(m_folder->mutex);
        auto const found = m_folder->entries.find(m_prefix + name);
        if (found == m_folder->entries.end())
            return std::unexpected(SystemError(ENOENT));
        bool const isNew = m_folder->entries.emplace(m_prefix + newName, found->second).second;
        return isNew ? std::expected<void, SystemError>() : std::unexpected(SystemError(EEXIST));
    }

    std::expected<void, SystemError> remove(QByteArray const& name) override
    {
        if (auto const ready = begin(InstallStep::remove, name); !ready)
            return ready;
        std::lock_guard const lock(m_folder->mutex);
        if (m_folder->entries.erase(m_prefix + name) == 0)
            return std::unexpected(SystemError(ENOENT));
        return {};
    }

private:
    std::expected<void, SystemError> begin(InstallStep step, QByteArray const& name) const
    {
        if (!isNameOfChild(name))
            return std::unexpected(SystemError(EINVAL));
        return m_files.step(step, name);
    }

    std::expected<void, SystemError> add(InstallStep step, QByteArray const& name, Entry entry)
    {
        if (auto const ready = begin(step, name); !ready)
            return ready;
        std::lock_guard const lock(m_folder->mutex);
        if (!m_folder->entries.emplace(m_prefix + name, std::move(entry)).second)
            return std::unexpected(SystemError(EEXIST));
        return {};
    }

    FakeFileSystem const& m_files;
    std::shared_ptr<Folder> m_folder;
    QByteArray m_prefix;
};

std::expected<std::unique_ptr<InstallFolder>, SystemError> FakeFileSystem::openForInstalling(QString const& path) const
{
    if (auto const ready = step(InstallStep::open, {}); !ready)
        return std::unexpected(ready.error());
    auto opened = open(path);
    if (!opened)
        return std::unexpected(opened.error());
    return std::make_unique<Install>(*this, *std::move(opened));
}

}
