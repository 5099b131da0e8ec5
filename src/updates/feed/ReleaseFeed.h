#pragma once

#include "updates/feed/FeedFault.h"
#include "updates/feed/Release.h"

#include <QByteArray>
#include <QList>

#include <expected>

namespace Quillory {

// The releases that a document in the form of AppStream's release metadata lists.
struct ReleaseFeed {
    static constexpr qsizetype mostBytes = 1 << 20;
    static constexpr qsizetype mostReleases = 1000;

    // To be asked of bytes whose signature holds. Anything that is not understood where it matters fails: the document
    // type with its entities, a version, a package without size or checksum. Other unknown elements are passed over.
    static std::expected<ReleaseFeed, FeedFault> read(QByteArray const& document);

    // The newest release that comes after `installed` and has a package for `platform`. Releases that are not meant for
    // everybody count where `installed` is such a one. Absent if there is none.
    std::optional<Release> newestAfter(ReleaseVersion const& installed, QString const& platform) const;

    QList<Release> releases;
};

}
