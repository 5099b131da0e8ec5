#include "text/StrictUtf8.h"

#include <QStringDecoder>

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>

namespace Quillory {

namespace {

// How long the bytes and the text agree in ASCII, whole blocks at a time. What follows may still agree.
std::ptrdiff_t equalAsciiLength(
    unsigned char const* byte, unsigned char const* lastByte, char16_t const* unit, char16_t const* lastUnit)
{
    constexpr std::ptrdiff_t block = 32;
    auto const length = std::min<std::ptrdiff_t>(lastByte - byte, lastUnit - unit) / block * block;
    for (std::ptrdiff_t start = 0; start < length; start += block) {
        unsigned difference = 0;
        for (std::ptrdiff_t index = start; index < start + block; ++index)
            difference |= static_cast<unsigned>(byte[index] ^ unit[index]) | (byte[index] & 0x80U);
        if (difference != 0)
            return start;
    }
    return length;
}

// The UTF-8 of the text's first scalar; no bytes for an unpaired surrogate, which has none.
struct Encoded {
    Encoded(char16_t const* unit, char16_t const* lastUnit)
    {
        char32_t scalar = *unit;
        if (QChar::isSurrogate(scalar)) {
            if (!QChar::isHighSurrogate(scalar) || unit + 1 == lastUnit || !QChar::isLowSurrogate(unit[1])) {
                byteCount = std::numeric_limits<std::size_t>::max();
                return;
            }
            scalar = QChar::surrogateToUcs4(*unit, unit[1]);
            unitCount = 2;
        }
        encode(scalar);
    }

    void encode(char32_t scalar)
    {
        if (scalar < 0x80) {
            bytes[0] = static_cast<unsigned char>(scalar);
            return;
        }
        byteCount = std::size_t { 2 } + (scalar >= 0x800 ? 1 : 0) + (scalar >= 0x10000 ? 1 : 0);
        for (auto index = byteCount - 1; index > 0; --index, scalar >>= 6U)
            bytes[index] = static_cast<unsigned char>(0x80U | (scalar & 0x3FU));
        constexpr std::array<unsigned char, 5> leads { 0, 0, 0xC0, 0xE0, 0xF0 };
        bytes[0] = static_cast<unsigned char>(leads[byteCount] | scalar);
    }

    std::array<unsigned char, 4> bytes {};
    std::size_t byteCount = 1;
    int unitCount = 1;
};

}

namespace {

std::optional<QString> decodeWithState(QByteArrayView bytes)
{
    // Stateless: a truncated tail is an error, not a beginning that waits for more.
    // ConvertInitialBom: the mark is converted like any other character instead of being swallowed.
    QStringDecoder decoder(
        QStringDecoder::Utf8, QStringDecoder::Flag::Stateless | QStringDecoder::Flag::ConvertInitialBom);
    QString text = decoder.decode(bytes);
    if (decoder.hasError())
        return std::nullopt;
    return text;
}

}

std::optional<QString> decodeStrictUtf8(QByteArrayView bytes)
{
    // The lenient conversion is the faster one. It swallows an initial mark and puts U+FFFD for whatever is ill-formed:
    // a text with neither went through it unchanged.
    if (!bytes.startsWith("\xEF\xBB\xBF")) {
        QString text = QString::fromUtf8(bytes);
        if (!text.contains(QChar::ReplacementCharacter))
            return text;
    }
    return decodeWithState(bytes);
}

bool isStrictUtf8Of(QByteArrayView bytes, QStringView text)
{
    auto const* byte = reinterpret_cast<unsigned char const*>(bytes.data());
    auto const* const lastByte = byte + bytes.size();
    auto const* unit = text.utf16();
    auto const* const lastUnit = unit + text.size();
    while (byte != lastByte && unit != lastUnit) {
        auto const same = equalAsciiLength(byte, lastByte, unit, lastUnit);
        byte += same;
        unit += same;
        if (byte == lastByte || unit == lastUnit)
            break;
        Encoded const encoded(unit, lastUnit);
        if (static_cast<std::size_t>(lastByte - byte) < encoded.byteCount
            || !std::equal(byte, byte + encoded.byteCount, encoded.bytes.begin()))
            return false;
        byte += encoded.byteCount;
        unit += encoded.unitCount;
    }
    return byte == lastByte && unit == lastUnit;
}

}
