#include "support/SamplePictures.h"

#include <QBuffer>
#include <QImage>
#include <QImageWriter>
#include <QtEndian>

#include <array>
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

QByteArray encoded(QImage const& image, QByteArray const& format, QImageIOHandler::Transformations transformation = {})
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, format);
    writer.setTransformation(transformation);
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

QByteArray orientedPicture(QByteArray const& format, QSize size, int orientation)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::white);
    for (int y = 0; y < size.height(); ++y)
        for (int x = 0; x < size.width() / 2; ++x)
            image.setPixel(x, y, qRgb(0, 0, 0));
    if (format == "tiff") {
        static constexpr std::array transformations { 0, 1, 3, 2, 6, 4, 5, 7 };
        auto const index = static_cast<std::size_t>(orientation - 1);
        return encoded(image, "tiff", QImageIOHandler::Transformations(transformations.at(index)));
    }
    // One entry: tag 0x112, type short, count one.
    auto const exif = [&](auto number) {
        return number(quint16 { 42 }) + number(quint32 { 8 }) + number(quint16 { 1 }) + number(quint16 { 0x112 })
            + number(quint16 { 3 }) + number(quint32 { 1 }) + number(static_cast<quint16>(orientation))
            + number(quint16 { 0 }) + number(quint32 { 0 });
    };
    auto const big = "MM" + exif([](auto number) { return bigEndian(number); });
    auto const file = encoded(image, format);
    if (format == "png")
        return withChunks(file, pngChunk("eXIf", big));
    if (format == "jpeg") {
        auto const contents = QByteArray("Exif\0\0", 6) + big;
        return file.first(2) + QByteArray::fromHex("ffe1") + bigEndian(static_cast<quint16>(contents.size() + 2))
            + contents + file.sliced(2);
    }
    auto const little = "II" + exif([](auto number) { return littleEndian(number); });
    auto const side = [](int length) { return littleEndian(static_cast<quint32>(length - 1)).first(3); };
    auto const body = "WEBPVP8X" + littleEndian(quint32 { 10 }) + QByteArray::fromHex("08000000") + side(size.width())
        + side(size.height()) + file.sliced(12) + "EXIF" + littleEndian(static_cast<quint32>(little.size())) + little;
    return "RIFF" + littleEndian(static_cast<quint32>(body.size())) + body;
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
