#pragma once

#include <QString>

#include <utility>

namespace Quillory {

// A package in the folder of downloads. The file ends with this object, unless it is left to others.
class DownloadedPackage {
public:
    explicit DownloadedPackage(QString path)
        : m_path(std::move(path))
    {
    }
    DownloadedPackage(DownloadedPackage&& other) noexcept
        : m_path(std::exchange(other.m_path, {}))
    {
    }
    DownloadedPackage& operator=(DownloadedPackage&& other) noexcept;
    DownloadedPackage(DownloadedPackage const&) = delete;
    DownloadedPackage& operator=(DownloadedPackage const&) = delete;
    ~DownloadedPackage() { remove(); }

    QString const& path() const { return m_path; }
    void leave() { m_path.clear(); }

private:
    void remove();

    QString m_path;
};

}
