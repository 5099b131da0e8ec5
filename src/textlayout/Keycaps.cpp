#include "textlayout/Keycaps.h"

#include "textlayout/PixelGrid.h"
#include "textlayout/SymbolDrawings.h"
#include "textlayout/SymbolPainting.h"

#include <algorithm>

namespace Quillory {

namespace {

constexpr double radius = 4; // points, as the next
constexpr double outline = 1;
constexpr double weight = 1.0 / 7; // of the keys' lines, as a share of their height
constexpr double besideSign = 1; // points between a box and what stands beyond a blank
constexpr QStringView standIn = u"x";
constexpr char16_t firstDrawn = u'\u2190'; // the first arrow

}

void Keycaps::add(LayoutContext const& context, AttributedText::Run const& run, TextRange part, QString& text,
    Qt::LayoutDirection direction, QList<QTextLayout::FormatRange>& formats)
{
    auto const& attributes = context.text().attributes(run);
    if (attributes.keycap <= 0)
        return;
    Look const look { &context, &attributes, &context.metrics(run) };
    if (!m_boxes.empty() && m_boxes.back().range.end() == part.location)
        m_boxes.back().range.length += part.length;
    else
        m_boxes.push_back({ part, look });
    for (auto position = part.location; position < part.end(); ++position) {
        auto const letter = QStringView(text).sliced(position, 1);
        auto const* const drawing = letter.front() < firstDrawn ? nullptr : SymbolDrawing::of(letter);
        if (!drawing)
            continue;
        auto hidden = context.format(run);
        hidden.setForeground(Qt::transparent);
        if (direction == Qt::RightToLeft) {
            auto font = hidden.font();
            font.setLetterSpacing(QFont::AbsoluteSpacing,
                attributes.kern + context.letterWidth(run, letter) - context.letterWidth(run, standIn));
            hidden.setFont(font);
            text[position] = standIn.front();
        }
        formats.append({ static_cast<int>(position), 1, hidden });
        m_keys.push_back({ position, drawing, look });
    }
}

QRectF Keycaps::around(QRectF letters, double room, std::optional<QRectF> before, std::optional<QRectF> after)
{
    auto box = letters.adjusted(-room, 0, room, 0);
    for (auto const& blank : { before, after }) {
        if (!blank || blank->top() != letters.top())
            continue;
        if (blank->center().x() < letters.center().x())
            box.setLeft(std::max(box.left(), blank->left() + besideSign));
        else
            box.setRight(std::min(box.right(), blank->right() - besideSign));
    }
    return box;
}

void Keycaps::paintBoxes(QPainter& painter, QRectF const& clip, QStringView text, Pieces const& pieces) const
{
    auto const blankAt = [&](qsizetype position) {
        auto const isBlank = position >= 0 && position < text.size() && text[position] == u' ';
        return isBlank ? std::optional(pieces({ position, 1 }).front().box) : std::nullopt;
    };
    PixelGrid const grid(painter);
    painter.setRenderHint(QPainter::Antialiasing);
    for (auto const& [range, look] : m_boxes) {
        auto const& colors = look.context->colors();
        auto const& metrics = *look.metrics;
        // As high as the line allows with the letters in the middle.
        auto const middle = metrics.capHeight / 2;
        auto const half = std::min(metrics.ascent - middle, metrics.lineHeight - metrics.ascent + middle);
        auto const room = look.attributes->keycap;
        auto const before = blankAt(range.location - 1);
        auto const after = blankAt(range.end());
        painter.setPen(QPen(ReaderColors::codeBorder.resolved(colors.appearance), outline));
        painter.setBrush(colors.resolved(look.attributes->background.value_or(Color())));
        for (auto const& [box, baseline] : pieces(range)) {
            auto keycap = around(box, room, before, after);
            keycap.setTop(baseline - middle - half);
            keycap.setHeight(2 * half);
            if (keycap.intersects(clip))
                painter.drawRoundedRect(grid.frame(keycap, outline), radius, radius);
        }
    }
    painter.setRenderHint(QPainter::Antialiasing, false);
}

void Keycaps::paintKeys(QPainter& painter, QRectF const& clip, Pieces const& pieces) const
{
    for (auto const& [position, drawing, look] : m_keys) {
        auto const side = look.metrics->capHeight;
        for (auto const& [box, baseline] : pieces({ position, 1 })) {
            // The letter's spacing stands after it.
            auto const center = box.center().x() - look.attributes->kern / 2;
            QRectF const square(center - side / 2, baseline - side, side, side);
            if (square.intersects(clip))
                paintDrawing(painter, *drawing, square, look.context->foreground(*look.attributes), side * weight);
        }
    }
}

}
