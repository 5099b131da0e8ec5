#pragma once

#include "textlayout/LayoutContext.h"

#include <QRectF>
#include <QTextLayout>

#include <functional>
#include <optional>
#include <vector>

class QPainter;

namespace Quillory {

struct SymbolDrawing;

// The keycaps of a paragraph: a box around each step of a shortcut, and our own drawings of the keys that have one. The
// letters of these stay in the text, unseen, and keep their width. Positions are those of the paragraph's layout.
class Keycaps {
public:
    // A range's part in one line, in points.
    struct Piece {
        QRectF box;
        double baseline = 0;
    };
    using Pieces = std::function<std::vector<Piece>(TextRange)>;

    // The box around letters, `room` wider on either side, but for a blank there: beyond it stands another sign.
    static QRectF around(QRectF letters, double room, std::optional<QRectF> before, std::optional<QRectF> after);

    // Takes a run's part of the text, in the order of the text, and appends the formats that hide what is drawn. In text
    // from right to left a letter as wide takes the place of each that is hidden: symbols have no direction of their own,
    // and a shortcut would fall apart. The context outlives it.
    void add(LayoutContext const& context, AttributedText::Run const& run, TextRange part, QString& text,
        Qt::LayoutDirection direction, QList<QTextLayout::FormatRange>& formats);

    // Under the text, and over it. `pieces` and `clip` are in the painter's points, `text` is the layout's.
    void paintBoxes(QPainter& painter, QRectF const& clip, QStringView text, Pieces const& pieces) const;
    void paintKeys(QPainter& painter, QRectF const& clip, Pieces const& pieces) const;

    bool isEmpty() const { return m_boxes.empty(); }

private:
    struct Look {
        LayoutContext const* context = nullptr;
        TextAttributes const* attributes = nullptr;
        LayoutContext::Metrics const* metrics = nullptr;
    };
    struct Box {
        TextRange range;
        Look look;
    };
    struct Key {
        qsizetype position = 0;
        SymbolDrawing const* drawing = nullptr;
        Look look;
    };

    std::vector<Box> m_boxes;
    std::vector<Key> m_keys;
};

}
