#pragma once

#include <QByteArray>
#include <QByteArrayList>

#include <optional>

namespace Quillory {

// The lines of a text file without their ends; an end of the last line begins no other.
inline QByteArrayList minisignLines(QByteArray text)
{
    text.replace("\r\n", "\n");
    if (text.endsWith('\n'))
        text.chop(1);
    return text.split('\n');
}

inline std::optional<QByteArray> fromStrictBase64(QByteArray const& text)
{
    auto decoded = QByteArray::fromBase64Encoding(text, QByteArray::AbortOnBase64DecodingErrors);
    if (!decoded)
        return std::nullopt;
    return *std::move(decoded);
}

}
