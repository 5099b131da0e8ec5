#include "updates/feed/ReleaseFeed.h"

#include "updates/feed/ReleaseFeedReader.h"

#include <algorithm>

namespace Quillory {

ReleaseArtifact const* Release::artifactFor(QString const& platform) const
{
    auto const found = std::ranges::find(artifacts, platform, &ReleaseArtifact::platform);
    return found == artifacts.end() ? nullptr : &*found;
}

std::expected<ReleaseFeed, FeedFault> ReleaseFeed::read(QByteArray const& document)
{
    if (document.size() > mostBytes)
        return std::unexpected(FeedFault::tooLarge);
    return ReleaseFeedReader(document).read();
}

std::optional<Release> ReleaseFeed::newestAfter(ReleaseVersion const& installed, QString const& platform) const
{
    Release const* newest = nullptr;
    for (auto const& release : releases) {
        bool const isForAll = release.kind == Release::Kind::stable && !release.version.isPrerelease();
        bool const isNewer = release.version > (newest ? newest->version : installed);
        if (isNewer && (isForAll || installed.isPrerelease()) && release.artifactFor(platform))
            newest = &release;
    }
    return newest ? std::optional(*newest) : std::nullopt;
}

}
