#pragma once

#include <QByteArray>

#include <optional>

namespace Quillory {

// A public key as minisign writes it: one line of base64, with or without the line of comment above.
struct MinisignKey {
    static constexpr int idBytes = 8;
    static constexpr int keyBytes = 32;

    // Absent where `text` is no such key.
    static std::optional<MinisignKey> fromText(QByteArray const& text);

    QByteArray id;
    QByteArray key; // of Ed25519
};

}
