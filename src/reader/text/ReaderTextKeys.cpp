#include "reader/text/EventModifiers.h"
#include "reader/text/ReaderTextView.h"
#include "text/TextBoundaries.h"

#include <QKeyEvent>

#include <algorithm>
#include <array>

// What ReaderTextView does on keys.
namespace Quillory {

namespace {

constexpr double lineStep = 40;
constexpr int mostPasses = 8;

}

ModifierFlags ReaderTextView::modifiersWithoutPeek(Qt::KeyboardModifiers modifiers) const
{
    return without(modifierFlags(modifiers), peekModifiers);
}

std::optional<ReaderTextView::Command> ReaderTextView::commandOf(QKeyEvent const& event) const
{
    auto const isCommandKey = [&](Qt::Key key) {
        return event.key() == key && modifiersWithoutPeek(event.modifiers()) == ModifierFlags::command;
    };
    if (event.matches(QKeySequence::Copy) || isCommandKey(Qt::Key_C))
        return Command::copy;
    if (event.matches(QKeySequence::SelectAll) || isCommandKey(Qt::Key_A))
        return Command::selectAll;
    return {};
}

void ReaderTextView::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape) {
        if (onDismiss)
            onDismiss();
        return;
    }
    auto const modifiers = modifiersWithoutPeek(event->modifiers());
    if (m_selection.isEmpty() && modifiers == ModifierFlags::none) {
        if (event->key() == Qt::Key_Left || event->key() == Qt::Key_Right) {
            if (onNavigate)
                onNavigate(event->key() == Qt::Key_Left ? -1 : 1);
            return;
        }
    }
    if (auto const command = commandOf(*event)) {
        if (*command == Command::copy)
            copy();
        else
            selectAll();
        return;
    }
    if (auto const move = moveOf(*event))
        return applyMove(*move);
    if (!scrollByKey(*event))
        event->ignore();
}

// Moves of the selection: with Shift they extend it, without they end it.
std::optional<ReaderTextView::Move> ReaderTextView::moveOf(QKeyEvent const& event)
{
    auto const modifiers = modifiersWithoutPeek(event.modifiers());
    auto const extends = contains(modifiers, ModifierFlags::shift);
    auto const others = without(modifiers, ModifierFlags::shift);
    auto const byWord = others == ModifierFlags::control;
    if (others != ModifierFlags::none && !byWord)
        return {};
    constexpr std::array verticalKeys { Qt::Key_Up, Qt::Key_Down, Qt::Key_PageUp, Qt::Key_PageDown };
    if (std::ranges::find(verticalKeys, event.key()) == verticalKeys.end())
        m_columnOfMoves.reset();
    if (m_selection.isEmpty() && !extends && !byWord)
        return {};
    auto const head = startOfMoves();
    auto const collapses = !extends && !byWord && !m_selection.isEmpty();
    switch (event.key()) {
    case Qt::Key_Left:
        if (collapses)
            return Move { head, m_selection.start(), false };
        return Move { head,
            byWord ? TextBoundaries::previousWord(string(), head) : TextBoundaries::beforeCharacter(string(), head),
            extends };
    case Qt::Key_Right:
        if (collapses)
            return Move { head, m_selection.end(), false };
        return Move { head,
            byWord ? TextBoundaries::nextWord(string(), head) : TextBoundaries::afterCharacter(string(), head),
            extends };
    default:
        break;
    }
    if (!extends)
        return {};
    switch (event.key()) {
    case Qt::Key_Up:
        return Move { head, byWord ? TextBoundaries::previousLine(string(), head) : verticalMove(head, -1), true };
    case Qt::Key_Down:
        return Move { head, byWord ? TextBoundaries::nextLine(string(), head) : verticalMove(head, 1), true };
    case Qt::Key_PageUp:
        return Move { head, verticalMove(head, lineStep - height()), true };
    case Qt::Key_PageDown:
        return Move { head, verticalMove(head, height() - lineStep), true };
    case Qt::Key_Home:
        return Move { head, byWord ? 0 : lineRange(head).location, true };
    case Qt::Key_End:
        return Move { head, byWord ? length() : TextBoundaries::lastPlaceOf(string(), lineRange(head)), true };
    default:
        return {};
    }
}

// An empty selection has no visible caret: once its place is out of sight, keys begin at the line at the top.
qsizetype ReaderTextView::startOfMoves()
{
    auto const isInSight = [this](qsizetype place) {
        auto const middle = boundingRect({ place, 0 }).center().y();
        return middle >= m_origin.y() && middle <= m_origin.y() + height();
    };
    if (!m_selection.isEmpty() || isInSight(m_selection.head))
        return m_selection.head;
    auto const top = lineRange(scrollAnchor().location);
    return isInSight(top.location) ? top.location : std::min(top.end() + 1, length());
}

// To the nearest place of another line, above or below, in the column where the moves began.
qsizetype ReaderTextView::verticalMove(qsizetype head, double distance)
{
    constexpr double step = 4;
    constexpr double farthest = 2'000; // to the next line: further than any picture or spacing is high
    auto const box = boundingRect({ head, 0 });
    if (!m_columnOfMoves)
        m_columnOfMoves = box.left();
    auto const column = *m_columnOfMoves;
    auto const down = distance > 0;
    auto const own = lineRange(head);
    auto y = (down ? box.bottom() : box.top()) + distance;
    for (auto tried = 0.0; tried < farthest; tried += step, y += down ? step : -step) {
        if (y <= inset || y >= contentSize().height() - inset)
            return down ? length() : 0;
        auto const place = insertionIndexAt({ column, y });
        if (lineRange(characterIndexAt({ column, y })) != own)
            return place;
    }
    return head;
}

void ReaderTextView::applyMove(Move const& move)
{
    auto const anchor = m_selection.isEmpty() ? move.start : m_selection.anchor;
    setSelection({ move.extends ? anchor : move.head, move.head });
    scrollToVisible({ move.head, 0 });
    offerPrimarySelection();
}

void ReaderTextView::selectAll()
{
    setSelection({ 0, length() });
    offerPrimarySelection();
}

void ReaderTextView::copy()
{
    m_pasteboard.write(QClipboard::Clipboard, rendered().text, { m_selection.start(), m_selection.length() });
}

void ReaderTextView::offerPrimarySelection() const
{
    m_pasteboard.write(QClipboard::Selection, rendered().text, { m_selection.start(), m_selection.length() });
}

bool ReaderTextView::scrollByKey(QKeyEvent const& event)
{
    auto const modifiers = modifiersWithoutPeek(event.modifiers());
    auto const isPlain = modifiers == ModifierFlags::none;
    auto const isSpace = event.key() == Qt::Key_Space;
    if (!isPlain && modifiers != (isSpace ? ModifierFlags::shift : ModifierFlags::control))
        return false;
    auto const page = std::max<double>(lineStep, height() - lineStep);
    auto const by = [this](double distance) { setScrollOrigin(m_origin + QPointF(0, distance)); };
    switch (event.key()) {
    case Qt::Key_Up:
        by(-lineStep);
        return true;
    case Qt::Key_Down:
        by(lineStep);
        return true;
    case Qt::Key_PageUp:
        by(-page);
        return true;
    case Qt::Key_PageDown:
        by(page);
        return true;
    case Qt::Key_Space:
        by(isPlain ? page : -page);
        return true;
    case Qt::Key_Home:
        setScrollOrigin({ m_origin.x(), 0 });
        return true;
    case Qt::Key_End:
        // The last page becomes exact on the way, and the end with it.
        for (int pass = 0; pass < mostPasses && m_origin.y() < constrained({ 0, contentSize().height() }).y(); ++pass)
            setScrollOrigin({ m_origin.x(), contentSize().height() });
        return true;
    default:
        return false;
    }
}

}
