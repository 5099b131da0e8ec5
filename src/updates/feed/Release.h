#pragma once

#include "updates/feed/ReleaseNotes.h"
#include "updates/feed/ReleaseVersion.h"

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QUrl>

#include <cstdint>
#include <optional>

namespace Quillory {

// A file that a release comes as.
struct ReleaseArtifact {
    QUrl location;
    std::int64_t size = 0; // bytes, at least 1
    QByteArray sha256;     // 32 bytes
    QString platform;      // the processor and system that it is for, as "x86_64-linux-gnu"
};

// One entry of the feed.
struct Release {
    enum class Urgency { low, medium, high, critical };
    enum class Kind { stable, development };

    struct Issue {
        QString name;
        bool isVulnerability = false;
    };

    // Absent if the release has none for the platform.
    ReleaseArtifact const* artifactFor(QString const& platform) const;

    ReleaseVersion version;
    QDateTime date; // invalid if the feed tells none
    Urgency urgency = Urgency::medium;
    Kind kind = Kind::stable;
    ReleaseNotes notes;
    QList<Issue> issues;
    QList<ReleaseArtifact> artifacts;
};

}
