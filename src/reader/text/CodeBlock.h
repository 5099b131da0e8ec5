#pragma once

#include <QPoint>
#include <QRectF>

namespace Quillory {

// A block of code where it is shown, with the measures that all of them share, in points.
struct CodeBlock {
    static constexpr double margin = 8; // above and below its text
    static constexpr double smallestHeight = 36; // holds a button
    static constexpr double buttonRoom = 68; // at the right edge, kept free of code: a button and what surrounds it
    static constexpr double buttonFromRight = 54; // of the view
    static constexpr double buttonFromTop = 4; // of the block

    qsizetype target = 0;
    QRectF rectangle; // of the content

    // The top left corner of the button in the view, by the block's top edge there.
    static QPoint buttonCorner(double viewWidth, double top)
    {
        return QPointF(viewWidth - buttonFromRight, top + buttonFromTop).toPoint();
    }
};

}
