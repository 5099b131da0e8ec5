#include "reader/BannerLabel.h"

#include "presentation/hover_help/HoverHelpTrackingView.h"

#include <QAccessible>

#include <algorithm>

namespace Quillory {

namespace {

constexpr int mostLines = 12; // as many as an installation of all starters says

}

BannerLabel::BannerLabel(QWidget* parent)
    : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
    setWordWrap(true);
    setAlignment(Qt::AlignLeading | Qt::AlignTop);
    // A label that wraps asks for a width of its own choice.
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Minimum);
}

int BannerLabel::mostHeight() const
{
    return mostLines * fontMetrics().lineSpacing();
}

int BannerLabel::heightForWidth(int width) const
{
    return std::min(QLabel::heightForWidth(width), mostHeight());
}

QSize BannerLabel::minimumSizeHint() const
{
    return { 0, fontMetrics().lineSpacing() };
}

void BannerLabel::resizeEvent(QResizeEvent* event)
{
    QLabel::resizeEvent(event);
    auto const isCut = QLabel::heightForWidth(width()) > height();
    HoverHelpTrackingView::of(*this).setText(isCut ? text() : QString());
}

void BannerLabel::say(QString const& text)
{
    if (text == this->text())
        return;
    setText(text);
    if (text.isEmpty())
        return;
    QAccessibleEvent alert(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

}
