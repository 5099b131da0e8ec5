#include "updates/feed/MinisignKey.h"

#include "updates/feed/MinisignLines.h"

namespace Quillory {

std::optional<MinisignKey> MinisignKey::fromText(QByteArray const& text)
{
    auto const lines = minisignLines(text);
    if (lines.isEmpty())
        return std::nullopt;
    auto const bytes = fromStrictBase64(lines.last());
    if (!bytes || bytes->size() != 2 + idBytes + keyBytes || !bytes->startsWith("Ed"))
        return std::nullopt;
    return MinisignKey { bytes->sliced(2, idBytes), bytes->sliced(2 + idBytes) };
}

}
