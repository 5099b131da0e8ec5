#include "updates/feed/MinisignSignature.h"

#include "updates/feed/MinisignLines.h"

#include <sodium.h>

#include <array>
#include <utility>

namespace Quillory {

namespace {

constexpr int hashBytes = 64;
constexpr qsizetype lineCount = 4;

constexpr char untrustedMark[] = "untrusted comment: ";
constexpr char trustedMark[] = "trusted comment: ";

unsigned char const* bytesOf(QByteArray const& bytes)
{
    return reinterpret_cast<unsigned char const*>(bytes.constData());
}

bool isSigned(QByteArray const& bytes, QByteArray const& signature, MinisignKey const& key)
{
    static bool const isReady = sodium_init() >= 0;
    return isReady
        && crypto_sign_verify_detached(
               bytesOf(signature), bytesOf(bytes), static_cast<unsigned long long>(bytes.size()), bytesOf(key.key))
        == 0;
}

QByteArray hashOf(QByteArray const& bytes)
{
    QByteArray hash(hashBytes, Qt::Uninitialized);
    crypto_generichash(reinterpret_cast<unsigned char*>(hash.data()), hashBytes, bytesOf(bytes),
        static_cast<unsigned long long>(bytes.size()), nullptr, 0);
    return hash;
}

QByteArray field(QByteArray const& comment, QByteArray const& name)
{
    for (auto const& each : comment.split('\t')) {
        if (each.startsWith(name))
            return each.sliced(name.size());
    }
    return {};
}

}

std::optional<MinisignSignature> MinisignSignature::fromText(QByteArray const& text)
{
    auto const lines = minisignLines(text);
    if (text.size() > mostBytes || lines.size() != lineCount || !lines[0].startsWith(untrustedMark)
        || !lines[2].startsWith(trustedMark))
        return std::nullopt;
    auto const first = fromStrictBase64(lines[1]);
    auto const global = fromStrictBase64(lines[3]);
    constexpr auto head = 2 + MinisignKey::idBytes;
    if (!first || first->size() != head + crypto_sign_BYTES || !first->startsWith("ED") || !global
        || global->size() != crypto_sign_BYTES)
        return std::nullopt;
    return MinisignSignature { .keyId = first->sliced(2, MinisignKey::idBytes),
        .signature = first->sliced(head),
        .trustedComment = lines[2].sliced(sizeof trustedMark - 1),
        .globalSignature = *global };
}

std::expected<void, FeedFault> MinisignSignature::verify(QByteArray const& bytes, MinisignKey const& key) const
{
    if (keyId != key.id)
        return std::unexpected(FeedFault::otherKey);
    if (!isSigned(hashOf(bytes), signature, key) || !isSigned(signature + trustedComment, globalSignature, key))
        return std::unexpected(FeedFault::wrongSignature);
    return {};
}

std::optional<std::int64_t> MinisignSignature::time() const
{
    bool isNumber = false;
    auto const seconds = field(trustedComment, "timestamp:").toLongLong(&isNumber);
    return isNumber && seconds > 0 ? std::optional<std::int64_t>(seconds) : std::nullopt;
}

QByteArray MinisignSignature::fileName() const
{
    return field(trustedComment, "file:");
}

}
