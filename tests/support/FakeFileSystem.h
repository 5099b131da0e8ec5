#pragma once

#include "platform/FileSystem.h"

#include <functional>
#include <map>
#include <memory>

namespace Quillory {

// Folders in memory, with the faults that a test asks for. For one thread, but for reading.
class FakeFileSystem final : public FileSystem {
public:
    enum class Kind { regular, folder, symbolicLink, fifo, socket };

    // What an entry does to its readers. Errors are `errno` values.
    struct Entry {
        Kind kind = Kind::regular;
        QByteArray contents; // of a symbolic link: where it leads
        std::optional<int> statusError;
        std::optional<int> readError;
        bool hidesSize = false; // the status names no size
        std::optional<QByteArray> contentsAfterStatus; // the file changes between the look at it and the read
        std::optional<Kind> kindAfterStatus; // the entry becomes something else in between
        bool vanishesAfterStatus = false;
        std::optional<QByteArray> realPathOnceOpen; // the file is moved there as soon as it is open
    };

    // Asked before each step of an installation, with the name it is about ("" for a whole folder): an `errno` to fail
    // with, or 0. What it does to the folder meanwhile is what another program does. A failing write writes the half.
    enum class InstallStep { list, open, look, makeFolder, create, write, close, publish, remove };
    using InstallHook = std::function<int(InstallStep, QByteArray const& name)>;
    void setInstallHook(InstallHook hook) { m_installHook = std::move(hook); }

    void addFolder(QString const& path) { folder(path); }
    void removeFolder(QString const& path);
    void failListing(QString const& path, int error);

    // The folder is made where it is missing. A name with "/" stands below the folder; the folders between are there.
    void put(QString const& folder, QByteArray const& name, Entry entry);
    void write(QString const& folder, QByteArray const& name, QByteArray const& contents)
    {
        put(folder, name, { .contents = contents });
    }
    void remove(QString const& folder, QByteArray const& name);

    // What is at the path, absent when nothing is.
    std::optional<Entry> entry(QString const& folder, QByteArray const& name) const;

    int opens(QString const& folder) const;
    int reads(QString const& folder, QByteArray const& name = {}) const; // of all names, without one

    std::expected<std::unique_ptr<OpenFolder>, SystemError> openFolder(QString const& path) const override;
    std::expected<std::vector<QByteArray>, SystemError> everyName(QString const& path) const override;
    std::expected<std::unique_ptr<InstallFolder>, SystemError> openForInstalling(QString const& path) const override;

private:
    struct Folder;
    struct Place { // a folder of the test's, or one that an installation made in it
        std::shared_ptr<Folder> folder;
        QByteArray prefix; // of the names in it
    };
    class Open;
    class File;
    class Install;
    class NewFile;

    Folder& folder(QString const& path); // made where it is missing
    std::shared_ptr<Folder> existing(QString const& path) const;
    std::expected<void, SystemError> step(InstallStep step, QByteArray const& name) const;
    std::expected<Place, SystemError> open(QString const& path) const;

    std::map<QString, std::shared_ptr<Folder>> m_folders;
    InstallHook m_installHook;
};

}
