#pragma once

#include "text/TextRange.h"

#include <QRectF>

#include <optional>
#include <vector>

class QPainter;

namespace Quillory {

class ReaderTextView;

// Shows which code within a line, or which shortcut, a click would copy, and which one it has just copied. What lies in
// blocks has buttons for that. Places are points of the content. GUI thread only.
class InlineTargets {
public:
    // The view outlives it.
    explicit InlineTargets(ReaderTextView& view);

    // The target within a line that a click at this point would copy now.
    std::optional<qsizetype> clickableAt(QPointF point) const;
    // The pointer is on that target, or on none.
    void hover(std::optional<qsizetype> target);
    // Over the text.
    void paint(QPainter& painter, QRectF const& visible) const;

private:
    // The boxes of a target's lines, as far as they are in sight.
    std::vector<QRectF> boxes(qsizetype target, QRectF const& visible) const;

    ReaderTextView& m_view;
    std::optional<qsizetype> m_hovered;
};

}
