#pragma once

#include "updates/feed/MinisignKey.h"

#include <QByteArray>

#include <array>

#include <sodium.h>

namespace Quillory {

// Signs as minisign does, with a throw-away key: each number is a key of its own.
class FeedSigner {
public:
    explicit FeedSigner(unsigned char number = 1)
        : m_id(MinisignKey::idBytes, static_cast<char>(number))
    {
        std::array<unsigned char, crypto_sign_SEEDBYTES> seed {};
        seed.fill(number);
        crypto_sign_seed_keypair(m_public.data(), m_secret.data(), seed.data());
    }

    QByteArray publicKey() const { return ("Ed" + m_id + bytesOf(m_public)).toBase64(); }

    QByteArray sign(QByteArray const& document, qint64 time, QByteArray const& file = "releases.xml") const
    {
        return signWithComment(document, "timestamp:" + QByteArray::number(time) + "\tfile:" + file + "\thashed");
    }

    QByteArray signWithComment(QByteArray const& document, QByteArray const& comment) const
    {
        std::array<unsigned char, 64> hash {};
        crypto_generichash(hash.data(), hash.size(), pointer(document), length(document), nullptr, 0);
        auto const signature = ed25519(bytesOf(hash));
        return "untrusted comment: a throw-away key\n" + ("ED" + m_id + signature).toBase64()
            + "\ntrusted comment: " + comment + "\n" + ed25519(signature + comment).toBase64() + "\n";
    }

private:
    static unsigned char const* pointer(QByteArray const& bytes)
    {
        return reinterpret_cast<unsigned char const*>(bytes.constData());
    }
    static unsigned long long length(QByteArray const& bytes) { return static_cast<unsigned long long>(bytes.size()); }
    static QByteArray bytesOf(auto const& array)
    {
        return { reinterpret_cast<char const*>(array.data()), static_cast<qsizetype>(array.size()) };
    }
    QByteArray ed25519(QByteArray const& bytes) const
    {
        std::array<unsigned char, crypto_sign_BYTES> signature {};
        crypto_sign_detached(signature.data(), nullptr, pointer(bytes), length(bytes), m_secret.data());
        return bytesOf(signature);
    }

    QByteArray m_id;
    std::array<unsigned char, crypto_sign_PUBLICKEYBYTES> m_public {};
    std::array<unsigned char, crypto_sign_SECRETKEYBYTES> m_secret {};
};

}
