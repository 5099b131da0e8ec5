#pragma once

#include "platform/Executor.h"
#include "platform/ModifierFlags.h"
#include "reader/text/CodeButtons.h"
#include "reader/text/CodeCopyButton.h"
#include "reader/text/InlineTargets.h"
#include "reader/text/LinkHelp.h"
#include "reader/text/ReaderDocument.h"
#include "reader/text/SelectionPasteboard.h"
#include "reader/text/TextCommands.h"
#include "reader/text/TextPointer.h"
#include "reader/text/TextSelection.h"

#include <QWidget>

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

    enum class ScrollTo { nearest, middle };
    enum class ToEnd { always, byPageWhenNear };

    // Puts a target's text onto the clipboard; true when it is there.
    std::function<bool(QString const&)> onCopy;
    // One step of Left or Right: -1 for the sheet before, +1 for the sheet after.
    std::function<void(int)> onNavigate;
    std::function<void()> onDismiss;
    // Told the origin whenever it has changed.
    std::function<void(QPointF)> onScroll;
    std::function<void(QString const&)> onOpenLink;
    // Set while only the beginning of a text is shown: extends it to the whole before it returns. The view calls it for
    // what needs more, such as a key.
    std::function<void()> completeText;

    ModifierFlags peekModifiers = ModifierFlags::none; // held for a running peek; NativeReader writes them

    // Executor and clipboard outlive the view.
    ReaderTextView(Executor& executor, Clipboard& clipboard, QWidget* parent = nullptr);
    ~ReaderTextView() override;

    // Shows another document, fitted to the view, and hands back the one shown before. The scroll origin and the selection
    // stay, as far as the new text reaches.
    std::unique_ptr<ReaderDocument> show(std::unique_ptr<ReaderDocument> document);
    using QWidget::show;
    // Shows a document that begins with the text of the one shown: the line at the top, selection and buttons stay.
    void extend(std::unique_ptr<ReaderDocument> document);
    // Nothing of the text is missing afterwards.
    void completeNow();
    RenderedMarkdown const& rendered() const { return m_document->rendered(); }
    // That the text has, in points.
    double textWidth() const { return width() - 2 * inset; }
    TextWidths const& textWidths() const { return m_document->layout().widths(); }

    bool learningModeEnabled() const { return m_learningModeEnabled; }
    void setLearningModeEnabled(bool isEnabled);

    // The point of the content that stands at the view's top left corner, always within what can be scrolled to.
    QPointF scrollOrigin() const { return m_origin; }
    void setScrollOrigin(QPointF origin);
    // Down to the end, wherever it turns out to be once it is laid out; or no more than one page, when it seemed near.
    void scrollToEnd(ToEnd how);
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
    // Puts the selected text onto the clipboard, and where the middle button takes it from.
    void copy();
    void offerPrimarySelection() const;
    // For a drag. Absent when the selection must not leave.
    std::optional<QString> selectedText() const;
    void selectAll();

    // The area around a target's text, in points of the content. Empty when out of range.
    QRectF blockRectangle(qsizetype targetIndex) const;
    // The buttons of the blocks in sight, in the order of the text.
    std::vector<CodeCopyButton*> const& codeButtons() const { return m_buttons.inSight(); }
    std::optional<qsizetype> copiedTarget() const { return m_buttons.copied(); }
    // The positions of the targets that are blocks.
    std::vector<qsizetype> const& blockTargets() const { return m_document->blocks(); }

    FontSet const& fonts() const { return m_document->layout().fonts(); }
    ColorSet const& colors() const { return m_colors; }
    ModifierFlags modifiersWithoutPeek(Qt::KeyboardModifiers modifiers) const;

    // As those of ReaderDocument and its layout, at points of the content.
    qsizetype characterIndexAt(QPointF point) const { return m_document->layout().characterIndexAt(toText(point)); }
    qsizetype insertionIndexAt(QPointF point) const { return m_document->insertionIndexAt(toText(point)); }
    std::optional<qsizetype> characterUnder(QPointF point) const { return m_document->characterUnder(toText(point)); }
    QString linkAt(QPointF point) const { return m_document->linkAt(toText(point)); }
    std::optional<qsizetype> targetAt(qsizetype character) const { return m_document->targetAt(character); }
    QRectF boundingRect(TextRange range) const;
    // The paragraphs and tables that meet the area.
    TextRange textRangeFor(QRectF const& area) const
    {
        return m_document->layout().textRangeFor(area.top() - inset, area.bottom() - inset);
    }
    TextRange lineRange(qsizetype position) const { return m_document->layout().lineRange(position); }

    // Says where a link leads before it is followed; nothing for an empty one. To assistive programs, as the description.
    void tellLink(QString const& link);
    // The pointer is on the link, at this place of the content: under it as well.
    void hoverLink(QString const& link, QRectF const& place);

    InlineTargets& inlineTargets() { return m_inlineTargets; }

    std::unique_ptr<QMenu> makeMenu() const;

    // Everything is known of the text and nothing more is going on.
    bool isSettled() const { return !m_idleTask.isActive() && !completeText; }

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
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override { mousePressEvent(event); }
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    static QPointF toText(QPointF point) { return point - QPointF(inset, inset); }
    qsizetype length() const { return rendered().text.length(); }
    double endOfScrolling() const { return constrained({ 0, contentSize().height() }).y(); }

    void takeUpText();
    void keepAtTop(TextAnchor const& anchor);
    void layOut();
    void moveOrigin(QPointF origin);
    void startIdleWork();
    void doIdleWork();
    void foldSome();
    void makeSomeExact();
    bool isComplete() const { return m_document->folded().isComplete() && m_document->layout().isExact(); }
    std::vector<CodeBlock> blocksIn(QRectF const& visible) const;
    void layOutButtons();

    Executor& m_executor;
    ColorSet m_colors;
    std::unique_ptr<ReaderDocument> m_document;
    QPointF m_origin;
    QPointF m_toldOrigin; // which a change of width leaves where it was until all is laid out
    TextSelection m_selection;
    SelectionPasteboard m_pasteboard;
    bool m_learningModeEnabled = false;
    bool m_showsFocus = false; // when Tab has brought the keyboard
    CodeButtons m_buttons;
    TextCommands m_commands { *this };
    TextPointer m_pointer;
    LinkHelp m_linkHelp { *this };
    InlineTargets m_inlineTargets { *this };
    Registration m_idleTask;
};

}
