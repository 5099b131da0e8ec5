#pragma once

#include "updates/feed/FeedFault.h"
#include "updates/feed/MinisignKey.h"

#include <QByteArray>

#include <cstdint>
#include <expected>
#include <optional>

namespace Quillory {

// A signature as minisign writes it beside a file: Ed25519 of the file's BLAKE2b hash, and a comment that a second
// signature binds to the first.
struct MinisignSignature {
    static constexpr qsizetype mostBytes = 4096;

    // Says nothing of whether it holds. Absent where `text` is no signature of this kind.
    static std::optional<MinisignSignature> fromText(QByteArray const& text);

    // Whether `key` signed `bytes`, and the comment beside them.
    std::expected<void, FeedFault> verify(QByteArray const& bytes, MinisignKey const& key) const;

    // What the comment tells, to be believed once the signature holds: "timestamp:SECONDS<tab>file:NAME<tab>...".
    std::optional<std::int64_t> time() const;
    QByteArray fileName() const;

    QByteArray keyId;
    QByteArray signature;
    QByteArray trustedComment;
    QByteArray globalSignature;
};

}
