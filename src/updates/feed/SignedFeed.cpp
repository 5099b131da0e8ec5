#include "updates/feed/SignedFeed.h"

#include <utility>

namespace Quillory {

std::expected<SignedFeed, FeedFault> SignedFeed::read(
    QByteArray const& document, QByteArray const& signature, Expected const& expected)
{
    if (document.size() > ReleaseFeed::mostBytes)
        return std::unexpected(FeedFault::tooLarge);
    auto const parsed = MinisignSignature::fromText(signature);
    if (!parsed)
        return std::unexpected(FeedFault::noSignature);
    if (auto const verified = parsed->verify(document, expected.key); !verified)
        return std::unexpected(verified.error());
    auto const time = parsed->time();
    if (!time || parsed->fileName() != expected.fileName)
        return std::unexpected(FeedFault::otherFile);
    if (*time < expected.notBefore)
        return std::unexpected(FeedFault::older);
    if (*time > expected.now + mostAhead)
        return std::unexpected(FeedFault::stillToCome);
    auto feed = ReleaseFeed::read(document);
    if (!feed)
        return std::unexpected(feed.error());
    return SignedFeed { *std::move(feed), *time };
}

}
