#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>

#include <sys/stat.h>

namespace Quillory {

// A folder of the test's own, open to all users. What lies in it is told by the path from there, in the bytes that the
// file system has. It goes with its contents.
class TemporaryFolder {
public:
    // In memory where the system has that, since installing syncs each file.
    TemporaryFolder()
        : TemporaryFolder(
              std::filesystem::is_directory("/dev/shm") ? "/dev/shm" : std::filesystem::temp_directory_path())
    {
    }
    explicit TemporaryFolder(std::filesystem::path const& place)
        : m_root((canonical(place) / "quillory-XXXXXX").c_str())
    {
        if (!mkdtemp(m_root.data()) || chmod(m_root.constData(), 0777) != 0)
            std::abort();
    }
    ~TemporaryFolder() { remove({}); }
    TemporaryFolder(TemporaryFolder const&) = delete;
    TemporaryFolder& operator=(TemporaryFolder const&) = delete;

    QByteArray at(QByteArray const& name = {}) const { return name.isEmpty() ? m_root : m_root + '/' + name; }
    QString path(QByteArray const& name = {}) const { return QFile::decodeName(at(name)); }
    bool has(QByteArray const& name) const { return is_symlink(file(name)) || exists(file(name)); }

    // Of the folder, in order.
    std::set<QByteArray> names(QByteArray const& folder = {}) const
    {
        std::set<QByteArray> names;
        for (auto const& entry : std::filesystem::directory_iterator(file(folder)))
            names.insert(entry.path().filename().c_str());
        return names;
    }

    // Empty where no file can be read.
    QByteArray read(QByteArray const& name) const
    {
        std::ifstream stream(file(name), std::ios::binary);
        return QByteArray::fromStdString(std::string(std::istreambuf_iterator(stream), {}));
    }

    // The folders on the way are made.
    void write(QByteArray const& name, QByteArray const& contents) const
    {
        std::filesystem::create_directories(file(name).parent_path());
        std::ofstream(file(name), std::ios::binary) << contents.toStdString();
    }
    void makeFolder(QByteArray const& name) const { std::filesystem::create_directories(file(name)); }
    void makeFifo(QByteArray const& name) const { (void)mkfifo(at(name).constData(), 0644); }
    void link(QByteArray const& name, QByteArray const& target) const
    {
        std::filesystem::create_symlink(target.constData(), file(name));
    }
    void rename(QByteArray const& from, QByteArray const& to) const { std::filesystem::rename(file(from), file(to)); }
    void remove(QByteArray const& name) const { std::filesystem::remove_all(file(name)); }

    // Whether a script of the shell succeeds in it. What it says goes to the file "log".
    bool run(QByteArray const& script) const
    {
        auto const all = "set -e; cd '" + m_root + "'; export HOME=\"$PWD\" GIT_CONFIG_NOSYSTEM=1; (" + script
            + ") >log 2>&1 </dev/null";
        return std::system(all.constData()) == 0;
    }

private:
    std::filesystem::path file(QByteArray const& name) const { return at(name).constData(); }

    QByteArray m_root;
};

}
