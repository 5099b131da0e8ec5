#include "text/TextOrder.h"

#include <algorithm>
#include <set>
#include <string>

namespace Quillory {

namespace {

// No character below U+0300 composes with what stands before it, decomposes or is reordered: such a text is NFC as it is.
bool isPlain(QStringView text)
{
    char16_t all = 0;
    for (auto const* unit = text.utf16(); unit != text.utf16() + text.size(); ++unit)
        all = std::max(all, *unit);
    return all < 0x300;
}

// Moves surrogates above U+E000..U+FFFF, so that units of well-formed texts compare as scalars do.
constexpr int scalarRank(char16_t unit)
{
    if (unit < 0xD800)
        return unit;
    return unit < 0xE000 ? unit + 0x2000 : unit - 0x800;
}

std::strong_ordering compareScalars(QStringView a, QStringView b)
{
    auto const [left, right] = std::mismatch(a.utf16(), a.utf16() + a.size(), b.utf16(), b.utf16() + b.size());
    bool const leftEnds = left == a.utf16() + a.size();
    bool const rightEnds = right == b.utf16() + b.size();
    if (leftEnds || rightEnds)
        return rightEnds <=> leftEnds;
    return scalarRank(*left) <=> scalarRank(*right);
}

// Qt normalises in time that grows with the square of the text. So long texts are normalised piece by piece, and in
// a piece that can't be short, a long row of marks, the marks are put in order first.
constexpr qsizetype shortPiece = 64;
constexpr qsizetype longPiece = 256;

struct Scalar {
    char32_t value;
    qsizetype length;
};

Scalar scalarAt(QStringView text, qsizetype position)
{
    QChar const unit = text[position];
    if (unit.isHighSurrogate() && position + 1 < text.size() && text[position + 1].isLowSurrogate())
        return { QChar::surrogateToUcs4(unit, text[position + 1]), 2 };
    return { unit.unicode(), 1 };
}

// Whether the character may be reordered or composed with what stands before it: marks, and vowels and finals of Hangul.
bool leansOnPrevious(char32_t scalar)
{
    return scalar >= 0x300 && (QChar::isMark(scalar) || (scalar >= 0x1160 && scalar <= 0x11FF));
}

// Whether some character is composed of another one and then this one. Costs milliseconds when first asked.
bool composesBackward(char32_t scalar)
{
    static auto const followers = [] {
        std::set<char32_t> found;
        for (char32_t whole = 0x300; whole < 0x20000; ++whole) {
            if (QChar::decompositionTag(whole) != QChar::Canonical)
                continue;
            auto const parts = QChar::decomposition(whole).toStdU32String();
            found.insert(parts.begin() + 1, parts.end());
        }
        return found;
    }();
    return followers.contains(scalar);
}

// A mark that is a start of its own, as the vowel signs are that stand before their letter.
bool isFreeMark(char32_t scalar)
{
    return QChar::isMark(scalar) && QChar::combiningClass(scalar) == 0
        && QChar::decompositionTag(scalar) != QChar::Canonical && !composesBackward(scalar);
}

// The end of the next piece: never before a character that leans on the piece. Qt forgets to compose what follows in
// the same text once it has composed a mark above U+FFFF, so a piece ends after such a one.
qsizetype pieceEnd(QStringView text, qsizetype start)
{
    bool mayEnd = false;
    for (auto end = start; end < text.size();) {
        auto const scalar = scalarAt(text, end);
        bool const leans = leansOnPrevious(scalar.value) && (end - start < longPiece || !isFreeMark(scalar.value));
        if (mayEnd && !leans)
            return end;
        end += scalar.length;
        mayEnd = mayEnd || end - start >= shortPiece || (leans && scalar.length == 2);
    }
    return text.size();
}

void appendDecomposed(std::u32string& scalars, char32_t scalar)
{
    if (QChar::decompositionTag(scalar) != QChar::Canonical) {
        scalars += scalar;
        return;
    }
    // A decomposition is at most four characters long and two deep.
    auto const parts = QChar::decomposition(scalar).toStdU32String();
    for (auto const part : parts)
        appendDecomposed(scalars, part);
}

QString withMarksInOrder(QStringView piece)
{
    std::u32string scalars;
    for (qsizetype i = 0; i < piece.size();) {
        auto const scalar = scalarAt(piece, i);
        appendDecomposed(scalars, scalar.value);
        i += scalar.length;
    }
    auto const isStarter = [](char32_t scalar) { return QChar::combiningClass(scalar) == 0; };
    for (auto row = scalars.begin(); row != scalars.end();) {
        row = std::find_if_not(row, scalars.end(), isStarter);
        auto const end = std::find_if(row, scalars.end(), isStarter);
        std::stable_sort(
            row, end, [](char32_t a, char32_t b) { return QChar::combiningClass(a) < QChar::combiningClass(b); });
        row = end;
    }
    return QString::fromUcs4(scalars.data(), static_cast<qsizetype>(scalars.size()));
}

QString canonicalFormInPieces(QStringView text)
{
    QString result;
    result.reserve(text.size());
    for (qsizetype start = 0; start < text.size();) {
        auto const end = pieceEnd(text, start);
        auto const piece = text.sliced(start, end - start);
        result += (piece.size() > longPiece ? withMarksInOrder(piece) : piece.toString())
                      .normalized(QString::NormalizationForm_C);
        start = end;
    }
    return result;
}

}

std::strong_ordering compareText(QStringView a, QStringView b)
{
    if (isPlain(a) && isPlain(b))
        return compareScalars(a, b);
    return compareScalars(canonicalForm(a.toString()), canonicalForm(b.toString()));
}

bool canonicallyEqual(QStringView a, QStringView b)
{
    if (a == b)
        return true;
    if (isPlain(a) && isPlain(b))
        return false;
    return canonicalForm(a.toString()) == canonicalForm(b.toString());
}

QString canonicalForm(QString const& text)
{
    if (isPlain(text))
        return text;
    if (text.size() <= longPiece && pieceEnd(text, 0) == text.size())
        return text.normalized(QString::NormalizationForm_C);
    return canonicalFormInPieces(text);
}

}
