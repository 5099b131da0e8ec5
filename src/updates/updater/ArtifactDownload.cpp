#include "updates/updater/ArtifactDownload.h"

#include "updates/updater/DownloadSentence.h"
#include "updates/updater/UpdateAddress.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

#include <chrono>
#include <utility>

namespace Quillory {

using namespace Qt::StringLiterals;

namespace {

constexpr std::chrono::seconds longestSilence { 60 };
constexpr std::chrono::hours longest { 2 };

constexpr auto forThisUserAlone = QFile::ReadOwner | QFile::WriteOwner;

QString sentence(char const* text)
{
    return QCoreApplication::translate("Updates", text);
}

// Nothing of the name is the server's but what its end says of the kind of the file.
QString nameFor(Release const& release, ReleaseArtifact const& artifact)
{
    static QRegularExpression const kind(u"\\.[a-z0-9]{1,12}\\z"_s);
    return u"quillory-"_s + release.version.text() + kind.match(artifact.location.path()).captured();
}

}

ArtifactDownload::ArtifactDownload(Downloads& downloads, Release const& release, ReleaseArtifact artifact,
    Place const& place, Progress progress, Done done)
    : m_artifact(std::move(artifact))
    , m_path(QDir(place.folder).filePath(nameFor(release, m_artifact)))
    , m_progress(std::move(progress))
    , m_done(std::move(done))
    , m_part(m_path + u".part"_s)
    , m_file(m_part.path())
{
    Downloads::Request const request { m_artifact.location,
        [feed = place.feed](QUrl const& to) { return mayFetch(to, feed); }, m_artifact.size, longestSilence, longest };
    m_download = downloads.start(
        request, [this](QByteArray const& bytes) { return receive(bytes); },
        [this](std::expected<void, Downloads::Fault> const& result) { finish(result); });
}

// What an earlier process left is of no use: it had not been asked for in this one.
bool ArtifactDownload::open()
{
    QDir folder = QFileInfo(m_path).dir();
    folder.mkpath(u"."_s);
    QFile::setPermissions(folder.path(), forThisUserAlone | QFile::ExeOwner);
    for (auto const& name : folder.entryList({ u"quillory-*"_s }, QDir::Files | QDir::Hidden | QDir::System))
        folder.remove(name);
    return m_file.open(QFile::WriteOnly | QFile::NewOnly, forThisUserAlone);
}

bool ArtifactDownload::receive(QByteArray const& bytes)
{
    if ((!m_file.isOpen() && !open()) || m_file.write(bytes) != bytes.size()) {
        m_diskFault = m_file.errorString();
        return false;
    }
    m_hash.addData(bytes);
    m_received += bytes.size();
    m_progress(m_received);
    return true;
}

// Nothing of this object is used afterwards.
void ArtifactDownload::finish(std::expected<void, Downloads::Fault> const& result)
{
    auto done = std::exchange(m_done, nullptr);
    if (m_diskFault)
        done(std::unexpected(
            sentence(QT_TRANSLATE_NOOP("Updates", "The package can't be stored: %1")).arg(*m_diskFault)));
    else if (!result)
        done(std::unexpected(toSentence(result.error())));
    else
        done(package());
}

std::expected<DownloadedPackage, QString> ArtifactDownload::package()
{
    if (m_received != m_artifact.size)
        return std::unexpected(
            sentence(QT_TRANSLATE_NOOP("Updates", "The package has another size than the list of releases tells.")));
    if (m_hash.result() != m_artifact.sha256)
        return std::unexpected(
            sentence(QT_TRANSLATE_NOOP("Updates", "The package is not the one that the list of releases tells of.")));
    if (!m_file.flush() || !m_file.rename(m_path))
        return std::unexpected(
            sentence(QT_TRANSLATE_NOOP("Updates", "The package can't be stored: %1")).arg(m_file.errorString()));
    m_part.leave();
    return DownloadedPackage(m_path);
}

}
