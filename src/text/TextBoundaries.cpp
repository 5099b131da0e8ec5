#include "text/TextBoundaries.h"

#include <QTextBoundaryFinder>

#include <algorithm>

namespace Quillory {

namespace {

// Clusters and words that are longer are cut: nobody writes them.
constexpr qsizetype reach = 1'024;

struct Window {
    Window(QString const& text, qsizetype place)
        : start(std::max<qsizetype>(place - reach, 0))
        , string(text.mid(start, std::min(place + reach, text.size()) - start))
        , position(place - start)
    {
    }

    qsizetype start;
    QString string;
    qsizetype position;
};

bool isLineEnd(QChar character)
{
    return character == u'\n' || character == QChar::LineSeparator;
}

qsizetype boundary(QTextBoundaryFinder::BoundaryType type, Window const& window, bool forwards)
{
    QTextBoundaryFinder finder(type, window.string);
    finder.setPosition(window.position);
    auto const found = forwards ? finder.toNextBoundary() : finder.toPreviousBoundary();
    return window.start + (found >= 0 ? found : window.position);
}

}

qsizetype TextBoundaries::afterCharacter(QString const& text, qsizetype position)
{
    return boundary(QTextBoundaryFinder::Grapheme, { text, position }, true);
}

qsizetype TextBoundaries::beforeCharacter(QString const& text, qsizetype position)
{
    return boundary(QTextBoundaryFinder::Grapheme, { text, position }, false);
}

TextRange TextBoundaries::wordAt(QString const& text, qsizetype position)
{
    if (position >= text.size() || isLineEnd(text[position]))
        return { position, 0 };
    Window const window(text, position);
    auto const isBlank = [&](qsizetype unit) { return text[unit].isSpace() && !isLineEnd(text[unit]); };
    if (isBlank(position)) {
        auto start = position;
        auto end = position + 1;
        while (start > window.start && isBlank(start - 1))
            --start;
        while (end < window.start + window.string.size() && isBlank(end))
            ++end;
        return { start, end - start };
    }
    QTextBoundaryFinder finder(QTextBoundaryFinder::Word, window.string);
    finder.setPosition(window.position);
    auto const start = finder.isAtBoundary() ? window.position : std::max<qsizetype>(finder.toPreviousBoundary(), 0);
    finder.setPosition(window.position);
    auto const end = finder.toNextBoundary();
    return { window.start + start, (end < 0 ? window.string.size() : end) - start };
}

qsizetype TextBoundaries::nextWord(QString const& text, qsizetype position)
{
    if (position >= text.size())
        return text.size();
    if (isLineEnd(text[position]))
        return position + 1;
    auto end = wordAt(text, position).end();
    while (end < text.size() && text[end].isSpace() && !isLineEnd(text[end]))
        ++end;
    return end;
}

qsizetype TextBoundaries::previousWord(QString const& text, qsizetype position)
{
    auto start = position;
    while (start > 0 && text[start - 1].isSpace() && !isLineEnd(text[start - 1]))
        --start;
    if (start == 0 || (isLineEnd(text[start - 1]) && start < position))
        return start;
    return isLineEnd(text[start - 1]) ? start - 1 : wordAt(text, beforeCharacter(text, start)).location;
}

TextRange TextBoundaries::writtenLineAt(QString const& text, qsizetype position)
{
    auto const begin = text.begin();
    auto const end = std::find_if(begin + position, text.end(), isLineEnd);
    auto const first = std::find_if(
        std::make_reverse_iterator(begin + position), std::make_reverse_iterator(begin), isLineEnd);
    return { first.base() - begin, end - first.base() };
}

qsizetype TextBoundaries::previousLine(QString const& text, qsizetype position)
{
    return writtenLineAt(text, position > 0 && isLineEnd(text[position - 1]) ? position - 1 : position).location;
}

qsizetype TextBoundaries::nextLine(QString const& text, qsizetype position)
{
    return std::min(writtenLineAt(text, position).end() + 1, text.size());
}

qsizetype TextBoundaries::lastPlaceOf(QString const& text, TextRange line)
{
    auto const wraps = line.length > 0 && line.end() < text.size() && !isLineEnd(text[line.end()]);
    return wraps && text[line.end() - 1].isSpace() ? line.end() - 1 : line.end();
}

}
