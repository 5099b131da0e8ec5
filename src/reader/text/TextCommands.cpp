#include "reader/text/TextCommands.h"

#include "reader/text/CopyLook.h"
#include "reader/text/EventModifiers.h"
#include "reader/text/ReaderTextView.h"
#include "reader/text/TargetMenu.h"
#include "rendering/Headings.h"
#include "text/TextBoundaries.h"

#include <QKeyEvent>
#include <QMenu>

#include <algorithm>
#include <array>

namespace Quillory {

namespace {

constexpr double lineStep = 40; // points that an arrow key scrolls, and what stays in sight of the page before
constexpr double searchStep = 4; // points, less than any line is high
constexpr double farthestLine = 2'000; // points to the next line: further than any picture or spacing is high
constexpr double headingRoom = 8; // points over a heading that is scrolled to
constexpr qsizetype titleCharacters = 40; // of a target in the menu

}

TextCommands::TextCommands(ReaderTextView& view)
    : m_view(view)
{
}

std::optional<TextCommands::EditingCommand> TextCommands::editingCommandOf(QKeyEvent const& event) const
{
    auto const isCommandKey = [&](Qt::Key key) {
        return event.key() == key && m_view.modifiersWithoutPeek(event.modifiers()) == ModifierFlags::command;
    };
    if (event.matches(QKeySequence::Copy) || isCommandKey(Qt::Key_C))
        return EditingCommand::copy;
    if (event.matches(QKeySequence::SelectAll) || isCommandKey(Qt::Key_A))
        return EditingCommand::selectAll;
    return {};
}

bool TextCommands::perform(QKeyEvent const& event)
{
    if (leaveSheet(event))
        return true;
    if (auto const command = editingCommandOf(event)) {
        if (*command == EditingCommand::copy)
            m_view.copy();
        else
            m_view.selectAll();
        return true;
    }
    if (auto const move = moveOf(event)) {
        apply(*move);
        return true;
    }
    return scroll(event);
}

bool TextCommands::leaveSheet(QKeyEvent const& event) const
{
    if (event.key() == Qt::Key_Escape) {
        if (m_view.onDismiss)
            m_view.onDismiss();
        return true;
    }
    auto const isArrow = event.key() == Qt::Key_Left || event.key() == Qt::Key_Right;
    auto const isPlain = m_view.modifiersWithoutPeek(event.modifiers()) == ModifierFlags::none;
    if (!isArrow || !isPlain || !m_view.selection().isEmpty())
        return false;
    if (m_view.onNavigate)
        m_view.onNavigate(event.key() == Qt::Key_Left ? -1 : 1);
    return true;
}

// With Shift moves extend the selection, without they end it.
std::optional<TextCommands::Move> TextCommands::moveOf(QKeyEvent const& event)
{
    auto const modifiers = m_view.modifiersWithoutPeek(event.modifiers());
    auto const extends = contains(modifiers, ModifierFlags::shift);
    auto const others = without(modifiers, ModifierFlags::shift);
    auto const byWord = others == ModifierFlags::control;
    if (others != ModifierFlags::none && !byWord)
        return {};
    constexpr std::array verticalKeys { Qt::Key_Up, Qt::Key_Down, Qt::Key_PageUp, Qt::Key_PageDown };
    if (std::ranges::find(verticalKeys, event.key()) == verticalKeys.end())
        forgetColumn();
    if (m_view.selection().isEmpty() && !extends && !byWord)
        return {};
    auto const head = startOfMoves();
    if (auto const move = moveAlong(event, head, byWord, extends))
        return move;
    return extends ? moveFar(event, head, byWord) : std::nullopt;
}

std::optional<TextCommands::Move> TextCommands::moveAlong(
    QKeyEvent const& event, qsizetype head, bool byWord, bool extends) const
{
    auto const& text = m_view.rendered().text.string();
    auto const selection = m_view.selection();
    auto const collapses = !extends && !byWord && !selection.isEmpty();
    switch (event.key()) {
    case Qt::Key_Left:
        if (collapses)
            return Move { head, selection.start(), false };
        return Move { head,
            byWord ? TextBoundaries::previousWord(text, head) : TextBoundaries::beforeCharacter(text, head), extends };
    case Qt::Key_Right:
        if (collapses)
            return Move { head, selection.end(), false };
        return Move { head, byWord ? TextBoundaries::nextWord(text, head) : TextBoundaries::afterCharacter(text, head),
            extends };
    default:
        return {};
    }
}

// By lines and further, which always extends.
std::optional<TextCommands::Move> TextCommands::moveFar(QKeyEvent const& event, qsizetype head, bool byWord)
{
    auto const& text = m_view.rendered().text.string();
    auto const page = m_view.height() - lineStep;
    switch (event.key()) {
    case Qt::Key_Up:
        return Move { head, byWord ? TextBoundaries::previousLine(text, head) : verticalMove(head, -1), true };
    case Qt::Key_Down:
        return Move { head, byWord ? TextBoundaries::nextLine(text, head) : verticalMove(head, 1), true };
    case Qt::Key_PageUp:
        return Move { head, verticalMove(head, -page), true };
    case Qt::Key_PageDown:
        return Move { head, verticalMove(head, page), true };
    case Qt::Key_Home:
        return Move { head, byWord ? 0 : m_view.lineRange(head).location, true };
    case Qt::Key_End:
        return Move { head, byWord ? text.size() : TextBoundaries::lastPlaceOf(text, m_view.lineRange(head)), true };
    default:
        return {};
    }
}

// An empty selection has no visible caret: once its place is out of sight, keys begin at the line at the top.
qsizetype TextCommands::startOfMoves() const
{
    auto const top = m_view.scrollOrigin().y();
    auto const isInSight = [&](qsizetype place) {
        auto const middle = m_view.boundingRect({ place, 0 }).center().y();
        return middle >= top && middle <= top + m_view.height();
    };
    auto const selection = m_view.selection();
    if (!selection.isEmpty() || isInSight(selection.head))
        return selection.head;
    auto const line = m_view.lineRange(m_view.scrollAnchor().location);
    if (isInSight(line.location))
        return line.location;
    auto const& text = m_view.rendered().text.string();
    auto const hasFeed = line.end() < text.size() && text[line.end()] == u'\n'; // a line that is wrapped has none
    return line.end() + (hasFeed ? 1 : 0);
}

// To the nearest place of another line, above or below, in the column where the moves began.
qsizetype TextCommands::verticalMove(qsizetype head, double distance)
{
    auto const box = m_view.boundingRect({ head, 0 });
    if (!m_columnOfMoves)
        m_columnOfMoves = box.left();
    auto const column = *m_columnOfMoves;
    auto const down = distance > 0;
    auto const own = m_view.lineRange(head);
    auto y = (down ? box.bottom() : box.top()) + distance;
    for (auto tried = 0.0; tried < farthestLine; tried += searchStep, y += down ? searchStep : -searchStep) {
        if (y <= ReaderTextView::inset || y >= m_view.contentSize().height() - ReaderTextView::inset)
            return down ? m_view.rendered().text.length() : 0;
        auto const place = m_view.insertionIndexAt({ column, y });
        if (m_view.lineRange(m_view.characterIndexAt({ column, y })) != own)
            return place;
    }
    return head;
}

void TextCommands::apply(Move const& move)
{
    auto const selection = m_view.selection();
    auto const anchor = selection.isEmpty() ? move.start : selection.anchor;
    m_view.setSelection({ move.extends ? anchor : move.head, move.head });
    m_view.scrollToVisible({ move.head, 0 });
    m_view.offerPrimarySelection();
}

bool TextCommands::scroll(QKeyEvent const& event) const
{
    auto const modifiers = m_view.modifiersWithoutPeek(event.modifiers());
    auto const isPlain = modifiers == ModifierFlags::none;
    auto const isSpace = event.key() == Qt::Key_Space;
    if (!isPlain && modifiers != (isSpace ? ModifierFlags::shift : ModifierFlags::control))
        return false;
    auto const origin = m_view.scrollOrigin();
    auto const page = std::max<double>(lineStep, m_view.height() - lineStep);
    auto const by = [&](double distance) { m_view.setScrollOrigin(origin + QPointF(0, distance)); };
    switch (event.key()) {
    case Qt::Key_Up:
        isPlain ? by(-lineStep) : scrollToHeading(-1);
        return true;
    case Qt::Key_Down:
        isPlain ? by(lineStep) : scrollToHeading(1);
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
        m_view.setScrollOrigin({ origin.x(), 0 });
        return true;
    case Qt::Key_End:
        m_view.scrollToEnd(ReaderTextView::ToEnd::always);
        return true;
    default:
        return false;
    }
}

// Columns stand beside each other: a heading that is next in the text need not be further on in the way that is asked.
void TextCommands::scrollToHeading(int way) const
{
    auto const& text = m_view.rendered().text;
    auto const top = m_view.scrollOrigin().y();
    auto const next = [&](qsizetype from) {
        return way > 0 ? Headings::after(text, from) : Headings::before(text, from);
    };
    auto const isFurtherOn = [&](qsizetype heading) {
        return way * (m_view.boundingRect({ heading, 1 }).top() - headingRoom - top) >= 1;
    };
    auto heading = next(m_view.scrollAnchor().location + (way > 0 ? 0 : 1));
    while (heading && !isFurtherOn(*heading))
        heading = next(*heading);
    if (!heading)
        return way < 0 ? m_view.setScrollOrigin({}) : void();
    m_view.setScrollAnchor({ *heading, 0 }, 0);
    m_view.setScrollOrigin(m_view.scrollOrigin() - QPointF(0, headingRoom));
}

std::unique_ptr<QMenu> TextCommands::makeMenu() const
{
    auto menu = std::make_unique<QMenu>(&m_view);
    if (m_view.learningModeEnabled()) {
        menu->addAction(ReaderTextView::tr("Copying is disabled in Learning Mode"))->setEnabled(false);
        return menu;
    }
    auto* const copySelection = menu->addAction(ReaderTextView::tr("Copy"), &m_view, &ReaderTextView::copy);
    copySelection->setEnabled(!m_view.selection().isEmpty());
    menu->addAction(ReaderTextView::tr("Select All"), &m_view, &ReaderTextView::selectAll)
        ->setEnabled(!m_view.rendered().text.isEmpty());
    auto const count = std::ssize(m_view.rendered().copyTargets);
    if (count == 0)
        return menu;
    menu->addSeparator();
    // The text may be another by the time that an item is asked for.
    auto const title = [&view = m_view](qsizetype index) {
        auto const& targets = view.rendered().copyTargets;
        return index < std::ssize(targets)
            ? CopyLook::label(targets[static_cast<std::size_t>(index)].text, titleCharacters)
            : QString();
    };
    addTargetItems(*menu, count, title, [&view = m_view](qsizetype index) { view.copyTarget(index); });
    return menu;
}

}
