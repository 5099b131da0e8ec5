#include "support/FaultyFileSystem.h"

#include <QFile>

namespace Quillory {

template<typename Seam>
class Wrapped : public Seam {
public:
    Wrapped(FaultyFileSystem const& files, std::unique_ptr<Seam> real, QByteArray name)
        : m_files(files)
        , m_real(std::move(real))
        , m_name(std::move(name))
    {
    }

protected:
    using Step = FaultyFileSystem::Step;
    template<typename Value>
    using Result = std::expected<Value, SystemError>;

    FaultyFileSystem const& m_files;
    std::unique_ptr<Seam> m_real;
    QByteArray m_name;
};

class FaultyFileSystem::File final : public Wrapped<OpenFile> {
public:
    using Wrapped::Wrapped;
    Result<Status> status() const override
    {
        return m_files.step(Step::fileStatus, m_name, [&] { return m_real->status(); });
    }
    Result<QByteArray> realPath() const override
    {
        return m_files.step(Step::fileRealPath, m_name, [&] { return m_real->realPath(); });
    }
    Result<QByteArray> read(qint64 limit) const override
    {
        return m_files.step(Step::fileRead, m_name, [&] { return m_real->read(limit); });
    }
};

class FaultyFileSystem::Folder final : public Wrapped<OpenFolder> {
public:
    using Wrapped::Wrapped;
    Result<std::vector<QByteArray>> names() const override
    {
        return m_files.step(Step::names, m_name, [&] { return m_real->names(); });
    }
    Result<EntryStatus> status(QByteArray const& name) const override
    {
        return m_files.step(Step::status, name, [&] { return m_real->status(name); });
    }
    Result<std::optional<QByteArray>> read(QByteArray const& name, qint64 limit) const override
    {
        return m_files.step(Step::read, name, [&] { return m_real->read(name, limit); });
    }
    Result<QByteArray> realPath() const override { return m_real->realPath(); }
    Result<QByteArray> realPath(QByteArray const& path) const override { return m_real->realPath(path); }
    Result<std::unique_ptr<OpenFile>> open(QByteArray const& path) const override
    {
        return m_files.opened<File>(Step::open, path, [&] { return m_real->open(path); });
    }
};

class FaultyFileSystem::NewFile final : public Wrapped<InstallFolder::NewFile> {
public:
    using Wrapped::Wrapped;
    Result<void> write(QByteArray const& bytes) override
    {
        auto const whole = m_files.step(Step::write, m_name, [&] { return m_real->write(bytes); });
        if (!whole)
            (void)m_real->write(bytes.first(bytes.size() / 2));
        return whole;
    }
    Result<void> close() override
    {
        return m_files.step(Step::close, m_name, [&] { return m_real->close(); });
    }
};

class FaultyFileSystem::Install final : public Wrapped<InstallFolder> {
public:
    using Wrapped::Wrapped;
    Result<bool> isFolder(QByteArray const& name) const override { return m_real->isFolder(name); }
    Result<void> makeFolder(QByteArray const& name) override
    {
        return m_files.step(Step::makeFolder, name, [&] { return m_real->makeFolder(name); });
    }
    Result<std::unique_ptr<InstallFolder::NewFile>> createFile(QByteArray const& name) override
    {
        return m_files.opened<FaultyFileSystem::NewFile>(
            Step::createFile, name, [&] { return m_real->createFile(name); });
    }
    Result<void> publish(QByteArray const& name, QByteArray const& newName) override
    {
        return m_files.step(Step::publish, newName, [&] { return m_real->publish(name, newName); });
    }
    Result<void> remove(QByteArray const& name) override { return m_real->remove(name); }
};

std::expected<std::unique_ptr<OpenFolder>, SystemError> FaultyFileSystem::openFolder(QString const& path) const
{
    return opened<Folder>(Step::openFolder, QFile::encodeName(path), [&] { return m_real.openFolder(path); });
}

std::expected<std::vector<QByteArray>, SystemError> FaultyFileSystem::everyName(QString const& path) const
{
    return step(Step::everyName, QFile::encodeName(path), [&] { return m_real.everyName(path); });
}

std::expected<std::unique_ptr<InstallFolder>, SystemError> FaultyFileSystem::openForInstalling(
    QString const& path) const
{
    return opened<Install>(
        Step::openForInstalling, QFile::encodeName(path), [&] { return m_real.openForInstalling(path); });
}

}
