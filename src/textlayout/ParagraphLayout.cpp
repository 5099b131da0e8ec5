#include "textlayout/ParagraphLayout.h"

#include "text/HiddenCharacters.h"
#include "textlayout/EmojiClusters.h"
#include "textlayout/SymbolPainting.h"

#include <QPainter>
#include <QTextBoundaryFinder>

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <utility>

namespace Quillory {

namespace {

constexpr int longestLigature = 4; // letters
constexpr char16_t placeholder = u'\u200B'; // takes the width of a picture as its letter spacing

// The desktop's coloured pictures, by the family that stands for whichever it has.
QTextCharFormat emojiFormat()
{
    QTextCharFormat format;
    format.setFontFamilies(QStringList { QStringLiteral("emoji") });
    return format;
}

bool mayRunRightToLeft(QStringView string)
{
    // A false alarm costs time only.
    return std::ranges::any_of(string, [](QChar character) {
        auto const code = character.unicode();
        return (code >= 0x0590 && code < 0x0900) || (code >= 0x200E && code < 0x2070)
            || (code >= 0xFB1D && code < 0xFF00) || character.isSurrogate();
    });
}

}

ParagraphLayout::ParagraphLayout(
    LayoutContext const& context, ParagraphStretch const& stretch, TextWidths const& widths, Breaks breaks)
    : m_context(context)
    , m_stretch(stretch)
{
    auto const& text = context.text();
    auto const styleRun = text.paragraphRunAt(std::min(stretch.range.location, text.length() - 1));
    auto const& style = text.paragraphStyle(text.paragraphRuns()[static_cast<std::size_t>(styleRun)]);
    m_width = widths.of(style);
    setUp(style, breaks);
    // Right-to-left lines begin where they can be seen, unless they are longer than what is visible.
    auto const container = m_width;
    if (m_rightToLeft)
        m_width = std::min(container, widths.visible);
    placeLines(style);
    if (m_lines.size() > 1 && m_width < container) {
        auto const beside = style.headIndent + style.firstLineHeadIndent - std::min(style.tailIndent, 0.0);
        m_width = std::clamp(std::ceil(m_layout.maximumWidth() + beside) + 1, widths.visible, container);
        placeLines(style);
    }
}

void ParagraphLayout::setUp(ParagraphStyle const& style, Breaks breaks)
{
    auto string = shownText();
    m_mixesDirections = mayRunRightToLeft(string);
    m_rightToLeft = m_mixesDirections && QStringView(string).isRightToLeft();

    applyFormats(string);
    m_layout.setText(string);
    m_layout.setCacheEnabled(true);

    QTextOption option(m_rightToLeft ? Qt::AlignRight : Qt::AlignLeft);
    option.setTextDirection(m_rightToLeft ? Qt::RightToLeft : Qt::LeftToRight);
    option.setWrapMode(
        breaks == Breaks::betweenWords ? QTextOption::WordWrap : QTextOption::WrapAtWordBoundaryOrAnywhere);
    option.setTabStopDistance(tabColumns * QFontMetricsF(m_layout.font()).horizontalAdvance(u' '));
    // Text that ends at the very edge of a line would wrap. A tab's type is turned round from right to left.
    if (auto const stop = std::min(style.rightTabStop, m_width - 1) - style.headIndent; stop > 0)
        option.setTabs({ { stop, m_rightToLeft ? QTextOption::LeftTab : QTextOption::RightTab } });
    m_layout.setTextOption(option);
}

// Unit for unit as long as the text itself.
QString ParagraphLayout::shownText() const
{
    auto const& text = m_context.text();
    auto string = text.string().mid(m_stretch.range.location, m_stretch.range.length);
    // An object character in a sheet is no picture, and the layout would give it no room.
    string.replace(QChar::ObjectReplacementCharacter, QChar::ReplacementCharacter);
    // What is shown of code is what is copied.
    if (!hasHiddenCharacters(string))
        return string;
    auto const runs = text.runs();
    for (auto index = static_cast<std::size_t>(text.runAt(m_stretch.range.location));
        index < runs.size() && runs[index].location < m_stretch.range.end(); ++index) {
        if (text.attributes(runs[index]).font.family != FontAttribute::Family::monospaced)
            continue;
        auto const from = std::max(runs[index].location - m_stretch.range.location, qsizetype(0));
        auto const to = std::min(runs[index].location + runs[index].length, m_stretch.range.end());
        auto const length = to - m_stretch.range.location - from;
        string.replace(from, length, withMarksOfHiddenCharacters(string.mid(from, length)));
    }
    return string;
}

void ParagraphLayout::applyFormats(QString& string)
{
    auto const& text = m_context.text();
    auto const runs = text.runs();
    auto const start = m_stretch.range.location;
    auto index = static_cast<std::size_t>(text.runAt(std::min(start, text.length() - 1)));
    auto const& first = m_context.metrics(runs[index]);
    m_layout.setFont(first.font);
    m_foreground = m_context.foreground(text.attributes(runs[index]));
    auto const emoji = emojiClusters(string);
    if (runs[index].location + runs[index].length >= m_stretch.range.end() && first.plain && emoji.empty())
        return;

    QList<QTextLayout::FormatRange> formats;
    for (; index < runs.size() && runs[index].location < m_stretch.range.end(); ++index) {
        auto const from = std::max(runs[index].location, start) - start;
        auto const to = std::min(runs[index].location + runs[index].length, m_stretch.range.end()) - start;
        formats.append({ static_cast<int>(from), static_cast<int>(to - from), m_context.format(runs[index]) });
        m_keycaps.add(m_context, runs[index], { from, to - from }, string,
            m_rightToLeft ? Qt::RightToLeft : Qt::LeftToRight, formats);
        auto const& attributes = text.attributes(runs[index]);
        if (attributes.baselineOffset != 0 && !attributes.attachment)
            m_raised.push_back({ { from, to - from }, attributes.baselineOffset });
        for (auto position = from; attributes.attachment && position < to; ++position) {
            m_pictures.push_back({ position, runs[index] });
            string[position] = placeholder;
        }
    }
    for (auto const& [location, length] : emoji) {
        formats.append({ static_cast<int>(location), static_cast<int>(length), emojiFormat() });
        // Fonts make one picture of a digit and its box, if the selector doesn't stand between them.
        auto const box = QStringView(string).sliced(location, length).indexOf(u"\uFE0F\u20E3");
        if (box >= 0)
            std::swap(string[location + box], string[location + box + 1]);
    }
    m_layout.setFormats(formats);
}

void ParagraphLayout::placeLines(ParagraphStyle const& style)
{
    auto const trailing = style.tailIndent > 0 ? std::min(style.tailIndent, m_width) : m_width + style.tailIndent;
    // Room at the right edge is kept free whatever the direction, the head indent then on either side.
    auto const isMirrored = m_rightToLeft && style.tailIndent >= 0;
    m_lines.clear();
    double y = m_stretch.startsParagraph ? style.paragraphSpacingBefore : 0;
    m_layout.beginLayout();
    for (;;) {
        auto line = m_layout.createLine();
        if (!line.isValid())
            break;
        auto const leading = m_lines.empty() && m_stretch.startsParagraph ? style.firstLineHeadIndent
                                                                          : style.headIndent;
        line.setLeadingIncluded(true);
        auto const left = isMirrored ? m_width - trailing : m_rightToLeft ? style.headIndent : leading;
        auto const right = isMirrored ? m_width - leading : m_rightToLeft ? trailing - leading : trailing;
        auto const width = std::max(1.0, right - left);
        line.setLineWidth(width);
        endOutsideCode(line, width);

        auto const extent = extentOf(line);
        auto const height = std::max(style.minimumLineHeight, std::ceil(extent.above + extent.below));
        // Extra height of a line stands above the glyphs.
        line.setPosition({ left, y + height - extent.below - line.ascent() });
        m_lines.push_back({ m_stretch.range.location + line.textStart(), y, height, lettersEnd(line) });
        y += height + style.lineSpacing;
    }
    m_layout.endLayout();
    m_height = y + (m_stretch.endsParagraph ? style.paragraphSpacing : 0);
}

// A hyphen in code is a letter like any other.
bool ParagraphLayout::isInsideCode(qsizetype place) const
{
    if (place <= 0 || place >= m_stretch.range.length || m_layout.text()[place - 1] != u'-')
        return false;
    auto const& text = m_context.text();
    auto const runs = text.runs();
    auto const run = runs[static_cast<std::size_t>(text.runAt(m_stretch.range.location + place - 1))];
    return text.attributes(run).font.family == FontAttribute::Family::monospaced
        && run.end() > m_stretch.range.location + place;
}

// Ends a line that the layout would end after a hyphen of code at the last other break, if it has one.
void ParagraphLayout::endOutsideCode(QTextLine& line, double width)
{
    auto const start = line.textStart();
    if (!isInsideCode(start + line.textLength()))
        return;
    QTextBoundaryFinder breaks(QTextBoundaryFinder::Line, m_layout.text());
    breaks.setPosition(start + line.textLength());
    auto end = breaks.toPreviousBoundary();
    while (end > start && isInsideCode(end))
        end = breaks.toPreviousBoundary();
    if (end <= start)
        return;
    // A ligature is one column, so that fewer columns may be what is wanted.
    int columns = 0;
    for (auto position = start; position < end; ++columns)
        position = std::max(m_layout.nextCursorPosition(position), position + 1);
    do
        line.setNumColumns(columns, width);
    while (start + line.textLength() > end && --columns > 0);
}

// With the words that are held together by the hyphens of code.
double ParagraphLayout::narrowestWidth() const
{
    auto widest = m_layout.minimumWidth();
    if (!m_layout.text().contains(u'-'))
        return widest;
    QTextBoundaryFinder breaks(QTextBoundaryFinder::Line, m_layout.text());
    auto isJoined = false;
    for (qsizetype from = 0, to = 0; (to = breaks.toNextBoundary()) >= 0;) {
        if (isInsideCode(to)) {
            isJoined = true;
            continue;
        }
        if (std::exchange(isJoined, false)) {
            auto end = to;
            while (m_layout.text()[end - 1].isSpace())
                --end;
            widest = std::max(widest, boundingRect({ m_stretch.range.location + from, end - from }).width());
        }
        from = to;
    }
    return widest;
}

int ParagraphLayout::lettersEnd(QTextLine const& line) const
{
    auto end = line.textStart() + line.textLength();
    auto const wraps = end < m_stretch.range.length;
    while (wraps && end > line.textStart() && m_layout.text()[end - 1].isSpace())
        --end;
    return end;
}

ParagraphLayout::Extent ParagraphLayout::united(Extent const& one, Extent const& other)
{
    return { std::max(one.above, other.above), std::max(one.below, other.below) };
}

ParagraphLayout::Extent ParagraphLayout::pictureExtent(TextAttributes const& attributes)
{
    return { attributes.attachment->height + attributes.baselineOffset, -attributes.baselineOffset };
}

ParagraphLayout::Extent ParagraphLayout::extentOf(QTextLine const& line) const
{
    auto const& text = m_context.text();
    auto const from = line.textStart();
    auto const to = from + line.textLength();
    Extent extent { line.ascent(), line.height() - line.ascent() };
    auto picture = std::ranges::lower_bound(m_pictures, from, {}, &Picture::position);
    for (; picture != m_pictures.end() && picture->position < to; ++picture)
        extent = united(extent, pictureExtent(text.attributes(picture->run)));
    for (auto const& [range, offset] : m_raised) {
        if (range.location < to && range.end() > from)
            extent.above = std::max(extent.above, line.ascent() + offset);
    }
    // A line feed is a character of its line: code that fills a cell stands on the baseline of its neighbours.
    auto const end = m_stretch.range.end();
    if (to == m_stretch.range.length && m_stretch.endsParagraph && end < text.length()) {
        auto const& metrics = m_context.metrics(text.runs()[static_cast<std::size_t>(text.runAt(end))]);
        extent = united(extent, { metrics.ascent, metrics.lineHeight - metrics.ascent });
    }
    return extent;
}

std::size_t ParagraphLayout::lineIndex(qsizetype location) const
{
    auto const after = std::ranges::upper_bound(m_lines, location, {}, &Line::location);
    return static_cast<std::size_t>(std::max<qsizetype>(std::distance(m_lines.begin(), after) - 1, 0));
}

ParagraphLayout::Line const& ParagraphLayout::lineHolding(qsizetype location) const
{
    return m_lines[lineIndex(location)];
}

ParagraphLayout::Line const& ParagraphLayout::lineAt(double y) const
{
    auto const found = std::ranges::partition_point(
        m_lines, [y](Line const& line) { return line.top + line.height <= y; });
    return found == m_lines.end() ? m_lines.back() : *found;
}

void ParagraphLayout::paint(QPainter& painter, QPointF topLeft, QRectF const& clip) const
{
    auto const pieces = [&](TextRange range) { return this->pieces(range, topLeft); };
    if (!m_keycaps.isEmpty())
        m_keycaps.paintBoxes(painter, clip, m_layout.text(), pieces);
    painter.setPen(m_foreground);
    m_layout.draw(&painter, topLeft, {}, clip);
    m_keycaps.paintKeys(painter, clip, pieces);
    paintPictures(painter, topLeft, clip);
}

void ParagraphLayout::paintPictures(QPainter& painter, QPointF topLeft, QRectF const& clip) const
{
    for (auto const& picture : m_pictures) {
        auto const& attributes = m_context.text().attributes(picture.run);
        auto const& attachment = *attributes.attachment;
        auto const line = m_layout.lineForTextPosition(static_cast<int>(picture.position));
        auto const x = std::min(
            line.cursorToX(static_cast<int>(picture.position)), line.cursorToX(static_cast<int>(picture.position) + 1));
        auto const baseline = line.y() + line.ascent();
        QRectF const target(topLeft + QPointF(x, baseline - attributes.baselineOffset - attachment.height),
            QSizeF(attachment.width, attachment.height));
        if (!target.intersects(clip))
            continue;
        if (auto const* symbol = std::get_if<Symbol>(&attachment.picture)) {
            paintSymbol(painter, symbol->name, target, m_context.colors().resolved(symbol->color));
            continue;
        }
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawImage(target, std::get<PreparedImage>(attachment.picture).cgImage);
    }
}

qsizetype ParagraphLayout::characterIndexAt(QPointF point) const
{
    auto const& line = lineAt(point.y());
    auto const textLine = m_layout.lineAt(static_cast<int>(&line - m_lines.data()));
    auto const last = textLine.textStart() + std::max(textLine.textLength() - 1, 0);
    auto const position = std::clamp(
        textLine.xToCursor(point.x(), QTextLine::CursorOnCharacter), textLine.textStart(), last);
    return m_stretch.range.location + letterAt(point.x(), static_cast<std::size_t>(&line - m_lines.data()), position);
}

// The text line may answer with the first letter of a ligature or, where directions meet, with one elsewhere in the
// line. Looks from `guess` on and, where directions may meet, through the whole line.
int ParagraphLayout::letterAt(double x, std::size_t line, int guess) const
{
    auto const textLine = m_layout.lineAt(static_cast<int>(line));
    auto const end = m_lines[line].lettersEnd;
    auto const lookThrough = [&](int from, int most) -> std::optional<int> {
        for (auto letter = from; letter < end && most > 0; --most) {
            auto const next = std::max(m_layout.nextCursorPosition(letter), letter + 1);
            auto const box = lineRect(line, letter, next);
            if (x >= box.left() && x < box.right())
                return letter;
            letter = next;
        }
        return {};
    };
    if (auto const near = lookThrough(guess, longestLigature))
        return *near;
    return m_mixesDirections ? lookThrough(textLine.textStart(), textLine.textLength()).value_or(guess) : guess;
}

QRectF ParagraphLayout::boundingRect(TextRange range) const
{
    auto const start = m_stretch.range.location;
    auto const size = static_cast<int>(m_stretch.range.length);
    auto from = static_cast<int>(std::clamp(range.location, start, m_stretch.range.end()) - start);
    auto to = static_cast<int>(std::clamp(range.end(), start, m_stretch.range.end()) - start);
    if (to > from) {
        while (from > 0 && !m_layout.isValidCursorPosition(from))
            --from;
        while (to < size && !m_layout.isValidCursorPosition(to))
            ++to;
    }
    QRectF result;
    auto const last = lineIndex(start + std::max(from, to - 1));
    for (auto line = lineIndex(start + from); line <= last; ++line) {
        auto const box = lineRect(line, from, to);
        // An empty rectangle must count too, which united() would leave out.
        auto const left = std::min(result.isNull() ? box.left() : result.left(), box.left());
        auto const right = std::max(result.isNull() ? box.right() : result.right(), box.right());
        result = result.isNull() ? box : QRectF(left, result.top(), right - left, box.bottom() - result.top());
    }
    return result;
}

QRectF ParagraphLayout::lineRect(std::size_t line, int from, int to) const
{
    auto const textLine = m_layout.lineAt(static_cast<int>(line));
    from = std::clamp(from, textLine.textStart(), m_lines[line].lettersEnd);
    to = std::clamp(to, from, m_lines[line].lettersEnd);

    auto left = textLine.cursorToX(from);
    auto right = from < to ? textLine.cursorToX(to) : left;
    if (from < to && m_mixesDirections) {
        // In mixed directions a cursor stands at the edge of either run: only the glyphs say where a letter is.
        auto const glyphs = textLine.glyphRuns(from, to - from);
        for (auto const& run : glyphs) {
            auto const box = run.boundingRect();
            auto const isFirst = &run == &glyphs.front();
            left = isFirst ? box.left() : std::min(left, box.left());
            right = isFirst ? box.right() : std::max(right, box.right());
        }
    }
    if (left > right)
        std::swap(left, right);
    return { left, m_lines[line].top, right - left, m_lines[line].height };
}

std::vector<Keycaps::Piece> ParagraphLayout::pieces(TextRange range, QPointF topLeft) const
{
    std::vector<Keycaps::Piece> pieces;
    auto line = lineIndex(m_stretch.range.location + range.location);
    for (auto from = static_cast<int>(range.location); from < range.end(); ++line) {
        auto const textLine = m_layout.lineAt(static_cast<int>(line));
        auto const to = std::min(textLine.textStart() + textLine.textLength(), static_cast<int>(range.end()));
        pieces.push_back(
            { lineRect(line, from, to).translated(topLeft), topLeft.y() + textLine.y() + textLine.ascent() });
        from = std::max(to, from + 1);
    }
    return pieces;
}

TextRange ParagraphLayout::lineRange(qsizetype location) const
{
    auto const line = m_layout.lineAt(static_cast<int>(lineIndex(location)));
    return { m_stretch.range.location + line.textStart(), line.textLength() };
}

void ParagraphLayout::addSelection(
    std::vector<QRectF>& covered, TextRange range, QPointF topLeft, QRectF const& clip) const
{
    auto const start = m_stretch.range.location;
    for (auto line = static_cast<std::size_t>(&lineAt(clip.top() - topLeft.y()) - m_lines.data());
        line < m_lines.size() && topLeft.y() + m_lines[line].top < clip.bottom(); ++line) {
        auto const isLast = line + 1 == m_lines.size();
        auto const from = m_lines[line].location;
        auto const to = isLast ? m_stretch.range.end() : m_lines[line + 1].location;
        auto const goesOn = range.end() > to && range.location < (isLast ? to + 1 : to);
        if (range.end() <= from || (range.location >= to && !goesOn))
            continue;
        auto const first = covered.size();
        addLineSelection(covered, line, std::max(range.location, from) - start, std::min(range.end(), to) - start);
        if (goesOn && (!isLast || m_stretch.endsParagraph)) {
            auto const box = lineRect(line, static_cast<int>(from - start), static_cast<int>(to - start));
            covered.push_back(m_rightToLeft ? QRectF(0, box.top(), box.left(), box.height())
                                            : QRectF(box.right(), box.top(), m_width - box.right(), box.height()));
        }
        for (auto rect = first; rect < covered.size(); ++rect) {
            if (!isLast && goesOn)
                covered[rect].setBottom(m_lines[line + 1].top);
            covered[rect].translate(topLeft);
        }
    }
}

void ParagraphLayout::addLineSelection(
    std::vector<QRectF>& covered, std::size_t line, qsizetype from, qsizetype to) const
{
    if (from >= to)
        return;
    if (!m_mixesDirections) {
        covered.push_back(lineRect(line, static_cast<int>(from), static_cast<int>(to)));
        return;
    }
    // In mixed directions neighbours in the text may stand in several places of the line.
    auto runs = m_layout.lineAt(static_cast<int>(line)).glyphRuns(static_cast<int>(from), static_cast<int>(to - from));
    std::ranges::sort(runs, {}, [](QGlyphRun const& run) { return run.boundingRect().left(); });
    auto reached = -std::numeric_limits<double>::infinity(); // marks may stand in the box of a letter of another font
    for (auto const& run : runs) {
        auto const left = std::max(run.boundingRect().left(), reached);
        reached = std::max(run.boundingRect().right(), reached);
        if (left < reached)
            covered.emplace_back(left, m_lines[line].top, reached - left, m_lines[line].height);
    }
}

}
