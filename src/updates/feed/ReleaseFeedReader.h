#pragma once

#include "updates/feed/ReleaseFeed.h"

#include <QXmlStreamReader>

namespace Quillory {

// One pass through a document of releases. See ReleaseFeed::read.
class ReleaseFeedReader {
public:
    explicit ReleaseFeedReader(QByteArray const& document)
        : m_xml(document)
    {
    }

    std::expected<ReleaseFeed, FeedFault> read();

private:
    bool findRoot();
    void readReleases();
    void readRelease();
    void readArtifacts(Release& release);
    void readArtifact(Release& release);
    void readIssues(Release& release);
    void readNotes(ReleaseNotes& notes);
    void readList(ReleaseNotes& notes, ReleaseNotes::Form form);
    void readBlock(ReleaseNotes& notes, ReleaseNotes::Form form);
    void readText(ReleaseNotes::Block& block, ReleaseNotes::Style style);
    void add(ReleaseNotes::Block& block, ReleaseNotes::Style style);
    bool isIn(QLatin1StringView name) const { return m_xml.name() == name; }
    bool isTranslation() const;
    void refuse(FeedFault fault);

    QXmlStreamReader m_xml;
    ReleaseFeed m_feed;
    qsizetype m_noteCharacters = 0; // of the release at hand
    std::optional<FeedFault> m_fault;
};

}
