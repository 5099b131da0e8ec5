#include "text/Graphemes.h"

#include <QTextBoundaryFinder>

namespace Quillory {

namespace {

// Never joins a neighbour that is of this kind too: the letters of Latin, Greek and Cyrillic, and the ideographs.
bool standsAlone(QChar unit)
{
    auto const code = unit.unicode();
    return (code < 0x0300 && code != u'\r') || (code >= 0x0370 && code < 0x0483) || (code >= 0x048A && code < 0x0590)
        || (code >= 0x4E00 && code < 0xA000);
}

qsizetype countByRules(QStringView text)
{
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    qsizetype count = 0;
    while (finder.toNextBoundary() >= 0)
        ++count;
    return count;
}

}

qsizetype graphemeCount(QStringView text)
{
    // The rules cost much, so they are asked only about stretches in which something may join.
    qsizetype count = 0;
    for (qsizetype start = 0; start < text.size();) {
        auto end = start;
        while (end < text.size() && standsAlone(text[end]))
            ++end;
        count += end - start;
        if (end == text.size())
            break;
        if (end > start) {
            --end; // the last of them may have a mark after it
            --count;
        }
        start = end;
        for (++end; end < text.size() && !(standsAlone(text[end - 1]) && standsAlone(text[end])); ++end) { }
        count += countByRules(text.sliced(start, end - start));
        start = end;
    }
    return count;
}

QStringView firstGraphemes(QStringView text, qsizetype count)
{
    constexpr qsizetype longestCharacter = 64;
    if (text.size() > count * longestCharacter) {
        text = text.first(count * longestCharacter);
        if (!text.isEmpty() && text.back().isHighSurrogate())
            text.chop(1);
    }
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    for (; count > 0; --count) {
        if (finder.toNextBoundary() < 0)
            return text;
    }
    return text.first(finder.position());
}

}
