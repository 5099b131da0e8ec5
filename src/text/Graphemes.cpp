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

// Half a flag: two of these letters make one.
bool isRegionalIndicator(QStringView text, qsizetype place)
{
    return place >= 0 && place + 1 < text.size() && text[place].unicode() == 0xD83C
        && text[place + 1].unicode() >= 0xDDE6 && text[place + 1].unicode() <= 0xDDFF;
}

// The finder parts the letters of a flag that follows another emoji.
bool isWithinFlag(QStringView text, qsizetype boundary)
{
    if (!isRegionalIndicator(text, boundary))
        return false;
    qsizetype before = 0;
    while (isRegionalIndicator(text, boundary - 2 * (before + 1)))
        ++before;
    return before % 2 != 0;
}

qsizetype nextBoundary(QTextBoundaryFinder& finder, QStringView text)
{
    auto boundary = finder.toNextBoundary();
    while (boundary >= 0 && isWithinFlag(text, boundary))
        boundary = finder.toNextBoundary();
    return boundary;
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
        if (nextBoundary(finder, text) < 0)
            return text;
    }
    return text.first(finder.position());
}

}
