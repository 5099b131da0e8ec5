#include "updates/updater/DownloadedPackage.h"

#include <QFile>

namespace Quillory {

DownloadedPackage& DownloadedPackage::operator=(DownloadedPackage&& other) noexcept
{
    if (this != &other) {
        remove();
        m_path = std::exchange(other.m_path, {});
    }
    return *this;
}

void DownloadedPackage::remove()
{
    if (!m_path.isEmpty())
        QFile::remove(m_path);
    m_path.clear();
}

}
