#pragma once

#include "rendering/RenderedMarkdown.h"
#include "textlayout/ColorSet.h"
#include "textlayout/TextLayout.h"

#include <QAbstractScrollArea>
#include <QBasicTimer>

#include <functional>
#include <vector>

namespace Quillory {

// Shows a rendered sheet, read only: the reading text on its surface, code blocks on theirs. Lays out what is visible and
// the rest in idle slices, while the line at the top stays where it is. GUI thread only.
class ReaderTextView : public QAbstractScrollArea {
    Q_OBJECT
public:
    // One step of Left or Right: -1 for the sheet before, +1 for the sheet after.
    std::function<void(int)> onNavigate;
    std::function<void()> onDismiss;
    // Told the origin whenever it has changed.
    std::function<void(QPointF)> onScroll;

    explicit ReaderTextView(QWidget* parent = nullptr);

    RenderedMarkdown const& rendered() const { return m_rendered; }
    // The scroll origin stays, as far as the new text reaches.
    void setRendered(RenderedMarkdown rendered);

    // The text is never laid out narrower, so that code scrolls sideways instead of wrapping. Points.
    double minimumCodeWidth() const { return m_minimumCodeWidth; }
    void setMinimumCodeWidth(double width);

    // The point of the content that stands at the view's top left corner, always within what can be scrolled to.
    QPointF scrollOrigin() const { return m_origin; }
    void setScrollOrigin(QPointF origin);

    // The area behind a target's text, in points of the content. Empty for an index that is none.
    QRectF blockRectangle(qsizetype targetIndex) const;

    // Every height of the text is known and nothing more is going on.
    bool isSettled() const { return m_layout.isExact() && !m_idle.isActive(); }

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void changeEvent(QEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    double containerWidth() const;
    QSizeF contentSize() const;
    QPointF constrained(QPointF origin) const;
    void layOut();
    void reflow();
    void moveOrigin(QPointF origin);
    void updateScrollBars();
    bool scrollByKey(QKeyEvent const& event);
    void paintBlocks(QPainter& painter, QRectF const& visible);

    RenderedMarkdown m_rendered;
    std::vector<qsizetype> m_blocks; // positions of the block targets, in the order of the text
    ColorSet m_colors;
    TextLayout m_layout;
    double m_minimumCodeWidth = 330;
    QPointF m_origin;
    bool m_settingBars = false;
    QBasicTimer m_idle;
};

}
