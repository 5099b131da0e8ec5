#include "text/SearchBytes.h"

#include "text/Scalars.h"
#include "text/SearchFolding.h"

#include <QString>

#include <algorithm>
#include <array>
#include <cstring>

namespace Quillory {

namespace {

// The letters of a syllable come in three ranges. Initials take the upper-case letters, which no folded text has. Vowels
// and finals take bytes that otherwise continue a character, in places where none is to be continued.
struct Letters {
    char32_t first;
    char32_t count;
    unsigned char byte;
};
constexpr Letters initials { 0x1100, 19, 'A' };
constexpr Letters vowels { 0x1161, 21, 0x80 };
constexpr Letters finals { 0x11A8, 27, 0x95 };

// The halves of the two-part vowel signs of Bengali, Odia, Tamil, Kannada, Malayalam and Sinhala. They take bytes that
// stand nowhere else.
constexpr std::array<char32_t, 18> halves { 0x09BE, 0x09C7, 0x09D7, 0x0B3E, 0x0B47, 0x0B57, 0x0BBE, 0x0BC6, 0x0BC7,
    0x0BD7, 0x0CD5, 0x0D3E, 0x0D46, 0x0D47, 0x0D57, 0x0DCF, 0x0DD9, 0x0DDF };
constexpr std::array<unsigned char, 18> halfBytes { 'T', 'U', 'V', 'W', 'X', 'Y', 'Z', 0xF5, 0xF6, 0xF7, 0xF8, 0xF9,
    0xFA, 0xFB, 0xFC, 0xFD, 0xFE, 0xFF };

constexpr bool continues(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

// How many bytes of UTF-8 follow this one within its character.
constexpr qsizetype continuations(char lead)
{
    auto const byte = static_cast<unsigned char>(lead);
    if (byte < 0xC0 || byte >= 0xF5)
        return 0;
    return byte < 0xE0 ? 1 : byte < 0xF0 ? 2 : 3;
}

void appendFolded(QByteArray& bytes, QStringView folded)
{
    forEachScalar(folded, [&](char32_t scalar) {
        for (auto const& letters : { initials, vowels, finals }) {
            if (scalar >= letters.first && scalar < letters.first + letters.count) {
                bytes += static_cast<char>(letters.byte + (scalar - letters.first));
                return;
            }
        }
        auto const* const half = std::ranges::find(halves, scalar);
        if (half != halves.end())
            bytes += static_cast<char>(halfBytes[static_cast<std::size_t>(half - halves.begin())]);
        else
            bytes += QStringView(QChar::fromUcs4(scalar)).toUtf8();
    });
}

// A query that begins with a vowel or a final looks like the rest of a character.
bool isBetweenCharacters(QByteArrayView bytes, qsizetype position)
{
    auto lead = position;
    while (lead > 0 && continues(bytes[lead - 1]))
        --lead;
    return lead == 0 || position - lead >= continuations(bytes[lead - 1]);
}

}

void appendSearchBytes(QByteArray& bytes, QStringView text)
{
    QString folded;
    while (!text.isEmpty()) {
        // ASCII, which most texts are made of, takes no call for each letter.
        auto const isAscii = [](QChar unit) { return unit.unicode() < 0x80; };
        auto const plain = std::ranges::find_if_not(text, isAscii) - text.begin();
        auto const before = bytes.size();
        bytes.resize(before + plain);
        std::ranges::transform(text.first(plain), bytes.begin() + before, [](QChar unit) {
            auto const letter = static_cast<char>(unit.unicode());
            return static_cast<char>(letter >= 'A' && letter <= 'Z' ? letter + 0x20 : letter);
        });
        text = text.sliced(plain);
        auto const rest = std::ranges::find_if(text, isAscii) - text.begin();
        folded.resize(0);
        forEachScalar(text.first(rest), [&](char32_t scalar) { appendFoldedForSearch(folded, scalar); });
        appendFolded(bytes, folded);
        text = text.sliced(rest);
    }
}

QByteArray searchBytes(QStringView text)
{
    QByteArray bytes;
    appendSearchBytes(bytes, text);
    return bytes;
}

bool holdsSearchBytes(QByteArrayView bytes, QByteArrayView query)
{
    if (query.isEmpty())
        return false;
    for (qsizetype from = 0; from < bytes.size();) {
        auto const* const found = static_cast<char const*>(memmem(bytes.data() + from,
            static_cast<std::size_t>(bytes.size() - from), query.data(), static_cast<std::size_t>(query.size())));
        if (!found)
            return false;
        auto const position = found - bytes.data();
        if (!continues(query.front()) || isBetweenCharacters(bytes, position))
            return true;
        from = position + 1;
    }
    return false;
}

}
