#include "reader/ElidedLabel.h"

#include "presentation/hover_help/HoverHelpTrackingView.h"

#include <QPainter>

namespace Quillory {

ElidedLabel::ElidedLabel(QWidget* parent)
    : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
}

QSize ElidedLabel::minimumSizeHint() const
{
    return { 0, QLabel::minimumSizeHint().height() };
}

QString ElidedLabel::elided() const
{
    return fontMetrics().elidedText(text(), Qt::ElideRight, contentsRect().width());
}

void ElidedLabel::paintEvent(QPaintEvent*)
{
    auto const shown = elided();
    HoverHelpTrackingView::of(*this).setText(shown == text() ? QString() : text());
    QPainter painter(this);
    painter.setPen(palette().color(foregroundRole()));
    painter.drawText(contentsRect(), static_cast<int>(alignment()) | Qt::TextSingleLine, shown);
}

}
