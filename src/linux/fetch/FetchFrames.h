#pragma once

#include <QByteArray>
#include <QtEndian>

#include <cstdint>
#include <optional>
#include <utility>

// What a process that fetches tells the one that it fetches for: a letter, the length of what follows, and that.
namespace Quillory::FetchFrames {

enum class Kind : char {
    bytes = 'B',    // the next of the file
    redirect = 'R', // an address that the server sends on to; 'y' or anything else is awaited
    end = 'E',      // nothing when all was fetched, else the fault as one byte
};

struct Frame {
    Kind kind = Kind::end;
    QByteArray content;
};

inline constexpr char allowed = 'y';
inline constexpr qsizetype headBytes = 1 + sizeof(std::uint32_t);
inline constexpr std::uint32_t mostBytes = 1 << 20; // of one content

inline QByteArray encode(Kind kind, QByteArray const& content)
{
    QByteArray frame(headBytes, Qt::Uninitialized);
    frame[0] = static_cast<char>(kind);
    qToBigEndian(static_cast<std::uint32_t>(content.size()), frame.data() + 1);
    return frame + content;
}

// How long the first frame is by its head. Absent while the head is still to come.
inline std::optional<std::uint32_t> contentLength(QByteArray const& buffer)
{
    if (buffer.size() < headBytes)
        return std::nullopt;
    return qFromBigEndian<std::uint32_t>(buffer.constData() + 1);
}

// The first frame, taken from the buffer, once it is whole.
inline std::optional<Frame> take(QByteArray& buffer)
{
    auto const length = contentLength(buffer);
    if (!length || buffer.size() - headBytes < static_cast<qsizetype>(*length))
        return std::nullopt;
    Frame frame { static_cast<Kind>(buffer[0]), buffer.sliced(headBytes, *length) };
    buffer.remove(0, headBytes + static_cast<qsizetype>(*length));
    return frame;
}

}
