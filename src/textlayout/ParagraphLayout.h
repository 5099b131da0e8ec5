#pragma once

#include "textlayout/Keycaps.h"
#include "textlayout/LayoutContext.h"
#include "textlayout/TextWidths.h"

#include <QRectF>
#include <QTextLayout>

#include <vector>

class QPainter;

namespace Quillory {

// A paragraph, or one stretch of a paragraph too long to be laid out at once, without its line feed.
struct ParagraphStretch {
    TextRange range;
    bool startsParagraph = true;
    bool endsParagraph = true;
};

// One paragraph laid out at a width. Positions are points from its top left corner, spacing included, and UTF-16 units of
// the whole text.
class ParagraphLayout {
public:
    struct Line {
        qsizetype location = 0;
        double top = 0;
        double height = 0;
        int lettersEnd = 0; // within the stretch: blanks after it hang over the edge and have no place of their own
    };

    static constexpr double tabColumns = 4; // widths of a blank between two tab stops

    // Whether a word that is too long for any line may be broken; not so for measuring words.
    enum class Breaks { alsoInsideWords, betweenWords };

    ParagraphLayout(LayoutContext const& context, ParagraphStretch const& stretch, TextWidths const& widths,
        Breaks breaks = Breaks::alsoInsideWords);
    Q_DISABLE_COPY_MOVE(ParagraphLayout)

    double height() const { return m_height; }
    Line const& lineAt(double y) const;
    Line const& lineHolding(qsizetype location) const;

    // The widths of the longest word, when broken between words, and of everything in one line.
    double narrowestWidth() const;
    double widestWidth() const { return m_layout.maximumWidth(); }

    void paint(QPainter& painter, QPointF topLeft, QRectF const& clip) const;

    // The character at the point, or the nearest one of its line; the line feed of an empty paragraph.
    qsizetype characterIndexAt(QPointF point) const;
    // The boxes of the lines from the first to the last character, in whole clusters. A line feed has no width.
    QRectF boundingRect(TextRange range) const;
    // The text of the line that holds the character, without its line feed.
    TextRange lineRange(qsizetype location) const;
    // Adds what a selection of the range covers, line by line, up to the edge where it goes on after a line.
    void addSelection(std::vector<QRectF>& covered, TextRange range, QPointF topLeft, QRectF const& clip) const;

private:
    // Of a line, from its baseline.
    struct Extent {
        double above = 0;
        double below = 0;
    };
    struct Picture {
        qsizetype position = 0; // within the stretch
        AttributedText::Run run;
    };

    void setUp(ParagraphStyle const& style, Breaks breaks);
    QString shownText() const;
    void applyFormats(QString& string);
    void placeLines(ParagraphStyle const& style);
    void endOutsideCode(QTextLine& line, double width);
    bool isInsideCode(qsizetype place) const;
    int lettersEnd(QTextLine const& line) const;
    static Extent united(Extent const& one, Extent const& other);
    static Extent pictureExtent(TextAttributes const& attributes);
    Extent extentOf(QTextLine const& line) const;
    int letterAt(double x, std::size_t line, int guess) const;
    QRectF lineRect(std::size_t line, int from, int to) const;
    std::vector<Keycaps::Piece> pieces(TextRange range, QPointF topLeft) const;
    void paintPictures(QPainter& painter, QPointF topLeft, QRectF const& clip) const;
    void addLineSelection(std::vector<QRectF>& covered, std::size_t line, qsizetype from, qsizetype to) const;
    std::size_t lineIndex(qsizetype location) const;

    LayoutContext const& m_context;
    ParagraphStretch m_stretch;
    QTextLayout m_layout;
    std::vector<Line> m_lines;
    std::vector<Picture> m_pictures;
    std::vector<std::pair<TextRange, double>> m_raised; // ranges within the stretch, and how far they are raised
    Keycaps m_keycaps;
    QColor m_foreground;
    bool m_rightToLeft = false;
    bool m_mixesDirections = false;
    double m_width;
    double m_height = 0;
};

}
