#pragma once

#include "textlayout/HeightStack.h"
#include "textlayout/LayoutContext.h"
#include "textlayout/ParagraphLayout.h"

#include <QDeadlineTimer>
#include <QRectF>

#include <algorithm>
#include <map>
#include <memory>
#include <vector>

class QPainter;

namespace Quillory {

class TableLayout;

// A place in a text that a change of heights or of width doesn't move: the first character of a line, and how far below
// that line's top the place lies, in points.
struct TextAnchor {
    qsizetype location = 0;
    double offset = 0;
    bool operator==(TextAnchor const&) const = default;
};

// A column of paragraphs and tables: a chapter of a text, or what a table's cell holds. Heights are estimated until asked
// for, and only what was last asked for keeps its lines. Positions are points from the flow's top left corner.
class TextFlow {
public:
    enum class Tables { asGrids, asParagraphs };

    // The context outlives the flow. `range` begins and ends at paragraphs.
    TextFlow(LayoutContext const& context, TextRange range, TextWidths const& widths, Tables tables);
    ~TextFlow();
    Q_DISABLE_COPY_MOVE(TextFlow)

    void setWidths(TextWidths const& widths);
    // Drops the lines and keeps the heights.
    void forgetLines();
    // Nothing of it is shown any more: keeps only what takes long to make again.
    void leave();

    // Makes what lies from top to bottom exact. What lies above keeps its place.
    void layOut(double top, double bottom);
    // Makes units exact from the first to the last, at least one, until the time is over. True when there are more.
    bool makeSomeExact(QDeadlineTimer const& deadline);
    bool isExact() const { return m_heights.isExact(); }

    TextAnchor anchorAt(double y);
    double positionOf(TextAnchor const& anchor);

    TextWidths const& widths() const { return m_widths; }
    double height() const { return m_heights.total(); }
    // The width of the widest table laid out, which may be more than is visible; at least what is visible.
    double usedWidth() const { return std::max(m_widths.visible, m_widestTable); }
    qsizetype unitCount() const { return m_heights.size(); }
    qsizetype unitAt(double y) const { return m_heights.indexAt(y); }
    TextRange unitRange(qsizetype unit) const; // with its line feed

    // These change no height: they read what layOut() has made exact and go by estimates elsewhere.
    void paint(QPainter& painter, QPointF topLeft, QRectF const& clip);
    qsizetype characterIndexAt(QPointF point) const;
    QRectF boundingRect(TextRange range) const;
    TextRange lineRange(qsizetype location) const;
    void addSelection(std::vector<QRectF>& covered, TextRange range, QPointF topLeft, QRectF const& clip) const;

private:
    using Paragraph = std::shared_ptr<ParagraphLayout const>;

    void estimate();
    double estimatedTableHeight(qsizetype unit) const;
    bool isTable(qsizetype unit) const;
    qsizetype unitHolding(qsizetype location) const;
    ParagraphStretch stretch(qsizetype unit) const;
    Paragraph paragraph(qsizetype unit) const;
    TableLayout* tableIfMade(qsizetype unit) const;
    // The table as laid out, or as it was before it was dropped. Null for one whose height is an estimate yet.
    std::shared_ptr<TableLayout const> tableToRead(qsizetype unit) const;
    TableLayout& table(qsizetype unit);
    Paragraph keptParagraph(qsizetype unit);
    Paragraph layOutParagraph(qsizetype unit);
    void layOutUnit(qsizetype unit, double top, double bottom);
    void dropTables();
    void noteHeight(qsizetype unit, TableLayout const& table);

    LayoutContext const& m_context;
    TextRange m_range;
    TextWidths m_widths;
    Tables m_tables;
    std::vector<quint32> m_starts; // of the units, and the end of the last
    HeightStack m_heights;
    HeightStack::Span m_shown; // by the last layOut()
    double m_widestTable = 0; // of those laid out at these widths
    std::map<qsizetype, Paragraph> m_lines;
    std::map<qsizetype, std::unique_ptr<TableLayout>> m_tableLayouts;
};

}
