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

QByteArray encoded(QImage const& image, char const* format)
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

QByteArray orientedJpeg(QSize size, int orientation)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::white);
    for (int y = 0; y < size.height(); ++y)
        for (int x = 0; x < size.width() / 2; ++x)
            image.setPixel(x, y, qRgb(0, 0, 0));
    // One entry: tag 0x112, type short, count one.
    auto const exif = QByteArray("Exif\0\0", 6) + "MM" + bigEndian(quint16 { 42 }) + bigEndian(quint32 { 8 })
        + bigEndian(quint16 { 1 }) + bigEndian(quint16 { 0x112 }) + bigEndian(quint16 { 3 }) + bigEndian(quint32 { 1 })
        + bigEndian(static_cast<quint16>(orientation)) + bigEndian(quint16 { 0 }) + bigEndian(quint32 { 0 });
    auto const segment = QByteArray::fromHex("ffe1") + bigEndian(static_cast<quint16>(exif.size() + 2)) + exif;
    auto const jpeg = encoded(image, "jpeg");
    return jpeg.first(2) + segment + jpeg.sliced(2);
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
