#pragma once

#include "textlayout/TextFlow.h"

#include <memory>
#include <vector>

namespace Quillory {

// A whole text in chapters of some thousand characters, cut between paragraphs and never inside a table. A chapter's
// paragraphs are looked at when it is first shown or when there is time; until then it is as high as its lines are
// taken to be. So neither a first look at a long text nor a new width asks for more than what is on screen.
// Positions are points from the text's top left corner.
class TextChapters {
public:
    // The context outlives the chapters.
    TextChapters(LayoutContext const& context, TextWidths const& widths);
    ~TextChapters();
    Q_DISABLE_COPY_MOVE(TextChapters)

    TextWidths const& widths() const { return m_widths; }
    void setWidths(TextWidths const& widths);

    // As those of TextFlow.
    void forgetLines();
    void layOut(double top, double bottom);
    bool makeSomeExact(QDeadlineTimer const& deadline);
    bool isExact() const { return m_heights.isExact(); }
    TextAnchor anchorAt(double y);
    double positionOf(TextAnchor const& anchor);
    double height() const { return m_heights.total(); }
    double usedWidth() const;

    // The paragraphs and tables that meet y0 to y1.
    TextRange textRangeFor(double y0, double y1) const;
    void paint(QPainter& painter, QRectF const& clip);
    qsizetype characterIndexAt(QPointF point) const;
    QRectF boundingRect(TextRange range) const;
    TextRange lineRange(qsizetype location) const;
    void addSelection(std::vector<QRectF>& covered, TextRange range, QRectF const& clip) const;

private:
    void estimate();
    double estimatedHeight(TextRange range) const;
    qsizetype count() const { return m_heights.size(); }
    TextRange range(qsizetype chapter) const;
    qsizetype chapterHolding(qsizetype location) const;
    // The chapter at the present width, which may be higher than it was taken to be until its height is noted.
    TextFlow& flow(qsizetype chapter) const;
    void noteHeight(qsizetype chapter);
    TextFlow& opened(qsizetype chapter); // with its height noted

    LayoutContext const& m_context;
    TextWidths m_widths;
    std::vector<quint32> m_starts; // of the chapters, and the end of the last
    HeightStack m_heights; // a chapter of other widths is an estimate
    mutable std::vector<std::unique_ptr<TextFlow>> m_flows; // of the chapters looked at so far
    HeightStack::Span m_shown; // by the last layOut()
};

}
