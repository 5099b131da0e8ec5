#pragma once

#include "rendering/ColorRole.h"

#include <optional>

namespace Quillory {

// The place of a cell: its table's position among the tables of the text, and where in that table it is.
struct TableCell {
    int table = 0;
    int row = 0;
    int column = 0;

    bool operator==(TableCell const&) const = default;
};

// The cell of a table that a paragraph lies in, but for its place. The paragraphs of a table follow one another, row by
// row and column by column. Content stands at the top.
struct TableBlock {
    // A column is as wide as its content asks for, or as `widthPercent` says.
    enum class Widths { automatic, fixed };
    enum class Border { none, leftEdge, allEdges };

    int columns = 1; // of the whole table
    double padding = 0; // points, all four sides
    Border border = Border::allEdges;
    double borderWidth = 0; // points; borders of neighbours collapse into one
    Color borderColor { ColorRole::separator };
    std::optional<Color> background;
    Widths widths = Widths::automatic;
    double widthPercent = 0; // of the width that the text has, when fixed; padding and border lie within

    bool operator==(TableBlock const&) const = default;
};

// How a paragraph is laid out. All lengths are points.
struct ParagraphStyle {
    // Lines end at what is visible, or at the container, which is as wide as code needs.
    enum class Wrapping { atView, atContainer };

    double firstLineHeadIndent = 0;
    double headIndent = 0;
    double tailIndent = 0; // 0 for none; below 0 room at the right edge, even where text runs from right to left
    double minimumLineHeight = 0;
    double paragraphSpacingBefore = 0;
    double paragraphSpacing = 0; // after the paragraph
    double lineSpacing = 0; // between lines
    Wrapping wrapping = Wrapping::atView;
    double rightTabStop = 0; // where text after a tab ends, from the paragraph's left edge; 0 for none
    std::optional<TableBlock> block;
    bool isHeading = false;

    bool operator==(ParagraphStyle const&) const = default;
};

}
