#pragma once

#include "platform/Downloads.h"
#include "updates/feed/Release.h"
#include "updates/updater/DownloadedPackage.h"

#include <QCryptographicHash>
#include <QFile>
#include <QString>
#include <QUrl>

#include <cstdint>
#include <expected>
#include <functional>
#include <optional>

namespace Quillory {

// Fetches the package of a release into a folder of the updater's own, which it empties first. The package is there once
// its size and checksum agree; until then a part of it is, which goes with this object.
class ArtifactDownload {
public:
    struct Place {
        QUrl feed;
        QString folder; // made where there is none, for this user alone
    };
    using Progress = std::function<void(std::int64_t received)>;
    // Called once, never inside the constructor; it may end this object. The error is a sentence for the user.
    using Done = std::move_only_function<void(std::expected<DownloadedPackage, QString>)>;

    ArtifactDownload(Downloads& downloads, Release const& release, ReleaseArtifact artifact, Place const& place,
        Progress progress, Done done);
    ArtifactDownload(ArtifactDownload const&) = delete;
    ArtifactDownload& operator=(ArtifactDownload const&) = delete;

private:
    bool open();
    bool receive(QByteArray const& bytes);
    void finish(std::expected<void, Downloads::Fault> const& result);
    std::expected<DownloadedPackage, QString> package();

    ReleaseArtifact m_artifact;
    QString m_path;
    Progress m_progress;
    Done m_done;
    DownloadedPackage m_part;
    QFile m_file;
    QCryptographicHash m_hash { QCryptographicHash::Sha256 };
    std::int64_t m_received = 0;
    std::optional<QString> m_diskFault; // the system's words
    Registration m_download;
};

}
