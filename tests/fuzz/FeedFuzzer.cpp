#include "fuzz/Fuzzer.h"

#include "support/FeedSigner.h"
#include "updates/feed/SignedFeed.h"

namespace {

using namespace Quillory;

// What of a feed goes on to the user and to the disk keeps its bounds.
void requireBounds(ReleaseFeed const& feed)
{
    require(feed.releases.size() <= ReleaseFeed::mostReleases);
    for (auto const& release : feed.releases) {
        require(ReleaseVersion::fromText(release.version.text()) == release.version);
        require(release.version.text().size() <= 64 && release.notes.blocks.size() <= ReleaseNotes::mostBlocks);
        for (auto const& artifact : release.artifacts)
            require(artifact.size > 0 && artifact.sha256.size() == 32 && !artifact.location.host().isEmpty());
    }
}

}

// Any bytes are a feed or a fault, signed or not; as a signature they never hold.
int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    static FeedSigner const signer;
    static SignedFeed::Expected const expected { *MinisignKey::fromText(signer.publicKey()), "releases.xml", 1 };
    auto const bytes = bytesOf(data, size);
    auto const plain = ReleaseFeed::read(bytes);
    auto const read = SignedFeed::read(bytes, signer.sign(bytes, 1), expected);
    require(plain.has_value() == read.has_value());
    if (plain)
        requireBounds(*plain);
    static QByteArray const document = "<releases/>";
    require(bytes == signer.sign(document, 1) || !SignedFeed::read(document, bytes, expected));
    (void)MinisignKey::fromText(bytes);
    return 0;
}
