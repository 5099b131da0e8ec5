#include "text/SearchFolding.h"

#include "text/Scalars.h"

namespace Quillory {

namespace {

// Scalars whose full case folding is longer than one scalar, and what is mapped like them. A false alarm costs time only.
bool mayFoldToSeveral(char32_t scalar)
{
    auto const within = [scalar](char32_t first, char32_t last) { return scalar >= first && scalar <= last; };
    switch (scalar) {
    case 0x00DF:
    case 0x0130:
    case 0x0149:
    case 0x01F0:
    case 0x0345:
    case 0x0390:
    case 0x03B0:
    case 0x0587:
        return true;
    default:
        return within(0x1E96, 0x1E9E) || within(0x1F50, 0x1FFF) || within(0xFB00, 0xFB17);
    }
}

bool isDecomposable(char32_t scalar)
{
    constexpr char32_t firstSyllable = 0xAC00; // Hangul decomposes by arithmetic
    constexpr char32_t lastSyllable = 0xD7A3;
    return QChar::decompositionTag(scalar) == QChar::Canonical || (scalar >= firstSyllable && scalar <= lastSyllable);
}

QString textOf(char32_t scalar)
{
    return QString::fromUcs4(&scalar, 1);
}

void append(QString& folded, char32_t scalar)
{
    if (QChar::category(scalar) != QChar::Mark_NonSpacing)
        folded += QChar::fromUcs4(scalar);
}

void appendWithoutMarks(QString& folded, QString const& decomposed)
{
    forEachScalar(decomposed, [&](char32_t scalar) { append(folded, scalar); });
}

}

void appendFoldedForSearch(QString& folded, char32_t scalar)
{
    if (scalar < 0x80) {
        auto const unit = static_cast<char16_t>(scalar);
        folded += QChar(unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 0x20) : unit);
        return;
    }
    if (mayFoldToSeveral(scalar)) {
        // Upper case spells these out, and the iota below a letter becomes a letter: marks are dropped afterwards.
        auto const spelledOut = textOf(scalar)
                                    .normalized(QString::NormalizationForm_D)
                                    .toCaseFolded()
                                    .toUpper()
                                    .toCaseFolded();
        appendWithoutMarks(folded, spelledOut.normalized(QString::NormalizationForm_D));
        return;
    }
    auto const lower = QChar::toCaseFolded(scalar);
    if (isDecomposable(lower))
        appendWithoutMarks(folded, textOf(lower).normalized(QString::NormalizationForm_D));
    else
        append(folded, lower);
}

QString foldedForSearch(QStringView text)
{
    QString folded;
    folded.reserve(text.size());
    forEachScalar(text, [&](char32_t scalar) { appendFoldedForSearch(folded, scalar); });
    return folded;
}

}
