#pragma once

#include "textlayout/LayoutContext.h"
#include "textlayout/ParagraphLayout.h"

namespace Quillory {

struct ParagraphEstimate {
    double height = 0;
    bool exact = false;
};

// How high a stretch will be, without laying it out. Plain ASCII in one font that can't but fit into a line is exact at
// once: that is most of what very long sheets are made of. `run` and `style` are those of the stretch's first character.
ParagraphEstimate estimatedParagraph(LayoutContext const& context, ParagraphStretch const& stretch,
    AttributedText::Run const& run, ParagraphStyle const& style, double width);

// How many lines of so many letters each the paragraphs of a text are likely to take.
double estimatedLines(QStringView string, double lettersOfLine);

}
