#pragma once

#include "platform/Executor.h"
#include "platform/ModifierFlags.h"
#include "reader/text/CodeCopyButton.h"
#include "reader/text/ReaderDocument.h"
#include "reader/text/SelectionPasteboard.h"
#include "reader/text/TextSelection.h"

#include <QBasicTimer>
#include <QWidget>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

class QMenu;

namespace Quillory {

// Shows a rendered sheet and enforces the rules of reading: read-only text, a click copies, Learning Mode shuts every
// road by which text could leave. Lays out what is visible and the rest in idle slices, while the line at the top stays
// where it is. Positions in the text are UTF-16 units, places are points of the content. GUI thread only.
class ReaderTextView : public QWidget {
    Q_OBJECT
public:
    static constexpr double inset = 16; // of the text, on all sides
    static constexpr std::chrono::milliseconds feedbackTime { 1500 };

    enum class ScrollTo { nearest, middle };

    // Puts a target's text onto the clipboard; true when it is there.
    std::function<bool(QString const&)> onCopy;
    // One step of Left or Right: -1 for the sheet before, +1 for the sheet after.
    std::function<void(int)> onNavigate;
    std::function<void()> onDismiss;
    // Told the origin whenever it has changed.
    std::function<void(QPointF)> onScroll;
    std::function<void(QString const&)> onOpenLink;

    ModifierFlags peekModifiers = ModifierFlags::none; // held for a running peek

    // The executor outlives the view.
    explicit ReaderTextView(Executor& executor, QWidget* parent = nullptr);
    ~ReaderTextView() override;

    RenderedMarkdown const& rendered() const { return m_document->rendered; }
    // The scroll origin and the selection stay, as far as the new text reaches.
    void setRendered(RenderedMarkdown rendered);
    // The same text rendered for other widths: the line at the top stays there instead.
    void setRendered(RenderedMarkdown rendered, TextWidths const& widths);
    // Shows another document, at the widths that it is laid out for, and hands back the one shown now.
    std::unique_ptr<ReaderDocument> exchangeDocument(std::unique_ptr<ReaderDocument> document);

    bool learningModeEnabled() const { return m_learningModeEnabled; }
    void setLearningModeEnabled(bool isEnabled);

    TextWidths const& textWidths() const { return m_document->layout.widths(); }
    void setTextWidths(TextWidths const& widths);

    // The point of the content that stands at the view's top left corner, always within what can be scrolled to.
    QPointF scrollOrigin() const { return m_origin; }
    void setScrollOrigin(QPointF origin);
    // Down to the end, wherever it turns out to be once it is laid out; past no more than one page when it seemed near.
    void scrollToEnd();
    QPointF constrained(QPointF origin) const;
    QSizeF contentSize() const;
    // The line at the top, which heights that change don't move.
    TextAnchor scrollAnchor();
    void setScrollAnchor(TextAnchor const& anchor, double x);

    TextSelection selection() const { return m_selection; }
    void setSelection(TextSelection selection);
    void scrollToVisible(TextRange range, ScrollTo where = ScrollTo::nearest);

    // Selects the next match, or goes on at the other end. False when there is none anywhere.
    bool findNext(QString const& query, bool backwards);

    // Leaves what the user did here.
    void startAfresh();

    // The one road by which a target is copied. True when its text is on the clipboard.
    bool copyTarget(qsizetype index);
    // Puts the selected text onto the clipboard.
    void copy();
    void selectAll();

    // The area behind a target's text, in points of the content. Empty for an index that is none.
    QRectF blockRectangle(qsizetype targetIndex) const;
    // The buttons of the blocks in sight, in the order of the text.
    std::vector<CodeCopyButton*> const& codeButtons() const { return m_codeButtons; }
    std::optional<qsizetype> copiedTarget() const { return m_copiedTarget; }

    // The positions of the targets that are blocks.
    std::vector<qsizetype> const& blockTargets() const { return m_document->blocks; }

    FontSet const& fonts() const { return m_document->layout.fonts(); }
    ColorSet const& colors() const { return m_colors; }

    // The character at a point of the content, and the place between characters that is nearest to it.
    qsizetype characterIndexAt(QPointF point) const;
    qsizetype insertionIndexAt(QPointF point) const;
    // In points of the content.
    QRectF boundingRect(TextRange range) const;
    TextRange lineRange(qsizetype position) const { return m_document->layout.lineRange(position); }

    // Of the item's choice: "Copy", "Select All", then one item a target. In Learning Mode nothing but why.
    std::unique_ptr<QMenu> makeMenu();

    // Everything is known of the text and nothing more is going on.
    bool isSettled() const { return !m_idle.isActive(); }

Q_SIGNALS:
    // The origin or the size of the content has changed.
    void moved();
    void selectionChanged();
    void targetsChanged(); // or whether they can be copied
    void copiedChanged();

protected:
    bool event(QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override { mousePressEvent(event); }
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    enum class Granularity { characters, words, lines };
    enum class Command { copy, selectAll };
    enum class Drag { none, selecting, text };
    struct Press {
        QPointF location; // in points of the view
        quint64 timestamp = 0;
        int clickCount = 0;
        bool hadSelection = false;
        Drag drag = Drag::none;
        TextRange unit; // what the click selected, from which a drag goes on
    };
    // Where a key moves an end of the selection from and to.
    struct Move {
        qsizetype start = 0;
        qsizetype head = 0;
        bool extends = false;
    };

    QString const& string() const { return m_document->rendered.text.string(); }
    qsizetype length() const { return string().size(); }
    QPointF toContent(QPointF point) const { return point + m_origin; }

    void take(std::unique_ptr<ReaderDocument> document);
    void layOut();
    void moveOrigin(QPointF origin);
    void startIdleWork();
    void doIdleWork();
    void foldSome();
    void makeSomeExact();

    void layoutCodeButtons();
    void updateCopyActions();
    void showCopied(std::optional<qsizetype> target);
    void refreshButtons();
    template<typename Visit>
    void forEachVisibleBlock(QRectF const& visible, Visit visit) const;
    void paintBlocks(QPainter& painter, QRectF const& visible) const;
    void paintSelection(QPainter& painter, QRectF const& visible) const;
    void paintStrips(QPainter& painter, QRectF const& visible) const;

    ModifierFlags modifiersWithoutPeek(Qt::KeyboardModifiers modifiers) const;
    std::optional<Command> commandOf(QKeyEvent const& event) const;
    bool scrollByKey(QKeyEvent const& event);
    std::optional<Move> moveOf(QKeyEvent const& event);
    qsizetype startOfMoves();
    qsizetype verticalMove(qsizetype head, double distance);
    void applyMove(Move const& move);

    int clickCountOf(QMouseEvent const& event) const;
    TextRange unitAt(qsizetype position, Granularity granularity) const;
    void extendSelection(QPointF point);
    void startTextDrag();
    void finishClick(QMouseEvent const& event);
    bool holdsCharacter(qsizetype index, QPointF point) const;
    QString linkAt(QPointF point) const;
    void updateCursor(QPointF point);
    void offerPrimarySelection() const;

    Executor& m_executor;
    ColorSet m_colors;
    std::unique_ptr<ReaderDocument> m_document;
    QPointF m_origin;
    QPointF m_toldOrigin; // which a change of width leaves behind until all is laid out
    TextSelection m_selection;
    SelectionPasteboard m_pasteboard;
    bool m_learningModeEnabled = false;
    std::vector<CodeCopyButton*> m_codeButtons;
    bool m_buttonsDirty = true;
    std::optional<qsizetype> m_copiedTarget;
    Registration m_feedbackTask;
    Press m_press;
    QPointF m_dragPoint;
    std::optional<double> m_columnOfMoves; // where moves up and down stay
    QBasicTimer m_idle;
    QBasicTimer m_autoScroll;
};

}
