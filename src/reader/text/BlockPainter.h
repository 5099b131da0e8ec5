#pragma once

#include "reader/text/CodeBlock.h"
#include "rendering/ReaderColors.h"

#include <vector>

class QPainter;

namespace Quillory {

// Paints what belongs to blocks of code but is no text. Works in points of the content.
class BlockPainter {
public:
    BlockPainter(std::vector<CodeBlock> blocks, ReaderColors::Appearance appearance);

    // Under the text.
    void paintBackgrounds(QPainter& painter) const;
    // Over the text: code that scrolls sideways ends before the button and at the block's edges, which lie within the
    // view's, `left` and `width`.
    void paintEdges(QPainter& painter, double left, double width) const;

private:
    std::vector<CodeBlock> m_blocks;
    QColor m_background;
    QColor m_border;
    QColor m_surface;
};

}
