#pragma once

#include "updates/feed/MinisignSignature.h"
#include "updates/feed/ReleaseFeed.h"

#include <cstdint>
#include <expected>

namespace Quillory {

// A feed whose signature holds: the one way from bytes of the network to releases.
struct SignedFeed {
    struct Expected {
        MinisignKey key;
        QByteArray fileName;        // as the signature must tell it
        std::int64_t notBefore = 0; // the time of the feed that was accepted last
        std::int64_t now = 0;
    };

    // How far the clock of who signs may be ahead, in seconds. A feed from further ahead would make all real ones older.
    static constexpr std::int64_t mostAhead = 86'400;

    // Reads nothing of `document` before `signature` holds for it.
    static std::expected<SignedFeed, FeedFault> read(
        QByteArray const& document, QByteArray const& signature, Expected const& expected);

    ReleaseFeed feed;
    std::int64_t time = 0; // of the signature, in seconds since 1970
};

}
