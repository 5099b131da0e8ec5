#include "support/SamplePictures.h"

#include <QBuffer>
#include <QImage>
#include <QImageWriter>
#include <QtEndian>

#include <cstdint>

namespace Quillory {

namespace {

template<typename Number>
QByteArray bigEndian(Number number)
{
    QByteArray bytes(sizeof number, '\0');
    qToBigEndian(number, bytes.data());
    return bytes;
}

template<typename Number>
QByteArray littleEndian(Number number)
{
    QByteArray bytes(sizeof number, '\0');
    qToLittleEndian(number, bytes.data());
    return bytes;
}

quint32 crc32(QByteArray const& bytes)
{
    quint32 crc = 0xFFFFFFFFU;
    for (char const byte : bytes) {
        crc ^= static_cast<unsigned char>(byte);
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc >> 1U) ^ ((crc & 1U) != 0 ? 0xEDB88320U : 0U);
    }
    return ~crc;
}

QByteArray encoded(QImage const& image, QByteArray const& format)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, format);
    return writer.write(image) ? bytes : QByteArray();
}

}

QByteArray encodedPicture(char const* format, QSize size, bool hasAlpha)
{
    QImage image(size, hasAlpha ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    image.fill(hasAlpha ? QColor(10, 200, 30, 128) : QColor(10, 200, 30));
    return encoded(image, format);
}

QByteArray gifOf(QSize size, int frames)
{
    auto const width = littleEndian(static_cast<quint16>(size.width()));
    auto const height = littleEndian(static_cast<quint16>(size.height()));
    // Two colours; each frame is the least that its format has: "clear" and "end" in codes of three bits.
    auto gif = "GIF89a" + width + height + QByteArray::fromHex("800000") + QByteArray::fromHex("ffffff000000");
    for (int frame = 0; frame < frames; ++frame)
        gif += ',' + QByteArray(4, '\0') + width + height + QByteArray::fromHex("0002012c00");
    return gif + ';';
}

QByteArray pngChunk(QByteArray const& type, QByteArray const& data)
{
    return bigEndian(static_cast<quint32>(data.size())) + type + data + bigEndian(crc32(type + data));
}

QByteArray withChunks(QByteArray const& png, QByteArray const& chunks)
{
    constexpr qsizetype headerEnd = 8 + 12 + 13;
    return png.first(headerEnd) + chunks + png.sliced(headerEnd);
}

QByteArray animationChunk(int frames)
{
    return pngChunk("acTL", bigEndian(static_cast<quint32>(frames)) + QByteArray(4, '\0'));
}

QByteArray promisingPng(QSize size)
{
    auto const header = bigEndian(static_cast<quint32>(size.width())) + bigEndian(static_cast<quint32>(size.height()))
        + QByteArray::fromHex("0100000000");
    auto const packed = qCompress(QByteArray(4'000'000, '\0'), 9).sliced(4);
    return QByteArray::fromHex("89504e470d0a1a0a") + pngChunk("IHDR", header) + pngChunk("IDAT", packed)
        + pngChunk("IEND", {});
}

}
