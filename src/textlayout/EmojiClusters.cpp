#include "textlayout/EmojiClusters.h"

#include <QTextBoundaryFinder>

#include <algorithm>

namespace Quillory {

namespace {

constexpr char16_t emojiSelector = 0xFE0F;
constexpr char16_t keycap = 0x20E3;

bool asksForPicture(QStringView text, qsizetype unit)
{
    auto const character = text[unit].unicode();
    auto const before = unit > 0 ? text[unit - 1] : QChar();
    auto const isSkinTone = character >= 0xDFFB && character <= 0xDFFF && before == u'\xD83C';
    auto const isKeycap = character == keycap && (before.isDigit() || before == u'#' || before == u'*');
    return character == emojiSelector || isKeycap || isSkinTone;
}

}

std::vector<TextRange> emojiClusters(QStringView text)
{
    // Long enough for every sequence that there is, and bounded, since marks can go on without end.
    constexpr qsizetype reach = 64;
    std::vector<TextRange> clusters;
    for (qsizetype unit = 0; unit < text.size(); ++unit) {
        if (!asksForPicture(text, unit))
            continue;
        auto const first = std::max(unit - reach, clusters.empty() ? 0 : clusters.back().end());
        auto const around = text.sliced(first, std::min(unit + reach, text.size()) - first);
        QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, around, nullptr, 0);
        finder.setPosition(unit + 1 - first);
        auto const end = finder.isAtBoundary() ? finder.position() : finder.toNextBoundary();
        finder.setPosition(unit - first);
        auto const start = finder.isAtBoundary() ? finder.position() : finder.toPreviousBoundary();
        if (start >= 0 && end > start)
            clusters.push_back({ first + start, end - start });
        unit = std::max(unit, first + end - 1);
    }
    return clusters;
}

}
