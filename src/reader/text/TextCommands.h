#pragma once

#include <QtGlobal>

#include <memory>
#include <optional>

class QKeyEvent;
class QMenu;

namespace Quillory {

class ReaderTextView;

// The keys and the menu of a text view: leave, change the sheet, copy, select and scroll. The view outlives it. GUI
// thread only.
class TextCommands {
public:
    explicit TextCommands(ReaderTextView& view);

    // The key is a command of the text's own, which a shortcut of the window must not take.
    bool claims(QKeyEvent const& event) const { return editingCommandOf(event).has_value(); }
    // False when the key does nothing here.
    bool perform(QKeyEvent const& event);
    // The next move up or down begins a column of its own.
    void forgetColumn() { m_columnOfMoves.reset(); }

    // "Copy", "Select All", then one item a target. In Learning Mode nothing but why.
    std::unique_ptr<QMenu> makeMenu() const;

private:
    enum class EditingCommand { copy, selectAll };
    // An end of the selection that goes from one place to another.
    struct Move {
        qsizetype start = 0;
        qsizetype head = 0;
        bool extends = false;
    };

    std::optional<EditingCommand> editingCommandOf(QKeyEvent const& event) const;
    bool leaveSheet(QKeyEvent const& event) const;
    bool scroll(QKeyEvent const& event) const;
    void scrollToHeading(int way) const;
    std::optional<Move> moveOf(QKeyEvent const& event);
    std::optional<Move> moveAlong(QKeyEvent const& event, qsizetype head, bool byWord, bool extends) const;
    std::optional<Move> moveFar(QKeyEvent const& event, qsizetype head, bool byWord);
    qsizetype startOfMoves() const;
    qsizetype verticalMove(qsizetype head, double distance);
    void apply(Move const& move);

    ReaderTextView& m_view;
    std::optional<double> m_columnOfMoves; // where moves up and down stay
};

}
