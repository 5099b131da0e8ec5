#pragma once

#include "textlayout/ColorSet.h"
#include "textlayout/FontSet.h"
#include "textlayout/LayoutContext.h"
#include "textlayout/TextChapters.h"

#include <chrono>
#include <memory>

namespace Quillory {

// An attributed text laid out at a width, as lazily as its length asks for: what is on screen is exact, the rest is
// estimated until there is time. Positions are points from the top left corner and UTF-16 units. GUI thread only.
class TextLayout {
public:
    // After heights have changed: how far the top of the view has to move down for its first line to stay.
    using ScrollCorrection = double;

    struct IdleResult {
        ScrollCorrection correction = 0;
        bool moreLeft = false;
    };

    static constexpr double largestCodeWidth = 12000; // longer lines of code wrap

    TextLayout(AttributedText const& text, TextWidths const& widths, FontSet fonts, ColorSet colors);

    AttributedText const& text() const { return m_context->text(); }
    FontSet const& fonts() const { return m_context->fonts(); }
    // As told. The container is made as wide as the widest line of code.
    TextWidths const& widths() const { return m_widths; }
    // All heights are estimates again. Take the anchor of the top line before, and ask for its position after.
    void setWidths(TextWidths const& widths);

    // Makes exact what is on screen when the top of the view is at `top`. Call before painting and before hit tests.
    ScrollCorrection layOutVisible(double top, double height);
    // Makes exact what it can within the budget, wherever it stands.
    IdleResult makeSomeExact(double top, std::chrono::milliseconds budget);
    bool isExact() const { return m_chapters->isExact(); }
    // Drops the lines of what is on screen and keeps the heights.
    void forgetLines() { m_chapters->forgetLines(); }

    TextAnchor anchorAt(double y) { return m_chapters->anchorAt(y); }
    double positionOf(TextAnchor const& anchor) { return m_chapters->positionOf(anchor); }

    double height() const { return m_chapters->height(); }
    // The width that the widest line of code and the widest table laid out so far really take; at least what is visible.
    double usedWidth() const;

    // The paragraphs and whole tables that meet y0 to y1.
    TextRange textRangeFor(double y0, double y1) const { return m_chapters->textRangeFor(y0, y1); }

    // `visible` is in points of the text, whose top left corner the painter has at its origin.
    void paint(QPainter& painter, QRectF const& visible, ColorSet const& colors);
    // The character at the point or the nearest of its line; the text's length is never exceeded.
    qsizetype characterIndexAt(QPointF point) const { return m_chapters->characterIndexAt(point); }
    // The line boxes of the range. One of several paragraphs is taken to fill the width.
    QRectF boundingRect(qsizetype location, qsizetype length) const
    {
        return m_chapters->boundingRect({ location, length });
    }

    // The text of the line that holds the character, without its line feed.
    TextRange lineRange(qsizetype location) const { return m_chapters->lineRange(location); }
    // The visible part of a selection, in rectangles that don't overlap, line by line.
    std::vector<QRectF> selectionRects(TextRange range, QRectF const& visible) const;

private:
    TextWidths roomyWidths() const { return { m_widths.visible, std::max(m_widths.container, m_codeWidth) }; }

    std::unique_ptr<LayoutContext> m_context; // the chapters refer to it
    TextWidths m_widths;
    double m_codeWidth; // of the widest line
    std::unique_ptr<TextChapters> m_chapters;
};

}
