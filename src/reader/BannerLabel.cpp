#include "reader/BannerLabel.h"

#include "presentation/hover_help/HoverHelpTrackingView.h"

#include <QPainter>

#include <algorithm>
#include <ranges>
#include <utility>

namespace Quillory {

BannerLabel::BannerLabel(Announcements& announcements, QWidget* parent, Lines lines)
    : QLabel(parent)
    , m_announcements(announcements)
    , m_lines(lines)
{
    setTextFormat(Qt::PlainText);
    setWordWrap(true);
    // A label that wraps asks for a width of its own choice.
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Minimum);
}

void BannerLabel::say(QString const& text, QString const& tail)
{
    auto const all = tail.isEmpty() ? text : tr("%1 %2").arg(text, tail);
    if (all == this->text())
        return;
    m_tail = tail.isEmpty() ? 0 : tail.size() + 1;
    setText(all);
    updateHelp();
    m_isAnnounced = all.isEmpty();
    if (isVisible())
        announce();
}

void BannerLabel::announce()
{
    if (!std::exchange(m_isAnnounced, true))
        m_announcements.announce(text(), Announcements::Priority::medium);
}

int BannerLabel::heightOf(QString const& text, int width) const
{
    constexpr int unbounded = 1'000'000;
    return fontMetrics().boundingRect(QRect(0, 0, width, unbounded), Qt::TextWordWrap, text).height();
}

QString BannerLabel::fitted(int width) const
{
    if (m_lines == Lines::elided) {
        auto lines = text().split(u'\n');
        for (auto& line : lines)
            line = fontMetrics().elidedText(line, Qt::ElideRight, width);
        return lines.join(u'\n');
    }
    auto const first = text().chopped(m_tail);
    if (m_tail == 0 || heightOf(first, width) == heightOf(text(), width))
        return text();
    return first + u'\n' + text().last(m_tail - 1);
}

int BannerLabel::wantedLines() const
{
    return std::clamp(heightOf(fitted(width()), width()) / fontMetrics().lineSpacing(), 1, mostLines);
}

void BannerLabel::setMostLines(int lines)
{
    if (std::exchange(m_mostLines, lines) != lines)
        updateGeometry();
}

int BannerLabel::heightForWidth(int width) const
{
    return std::min(heightOf(fitted(width), width), m_mostLines * fontMetrics().lineSpacing());
}

QSize BannerLabel::sizeHint() const
{
    return { 0, heightForWidth(width()) };
}

QSize BannerLabel::minimumSizeHint() const
{
    return { 0, fontMetrics().lineSpacing() };
}

void BannerLabel::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setPen(palette().color(foregroundRole()));
    painter.drawText(rect(), Qt::TextWordWrap | Qt::AlignVCenter, whole(fitted(width())));
}

// No line is shown in part.
QString BannerLabel::whole(QString const& text) const
{
    auto const room = std::max(height(), fontMetrics().height());
    if (heightOf(text, width()) <= room)
        return text;
    auto const begin = std::views::iota(qsizetype { 0 }, text.size());
    auto const cut = std::ranges::partition_point(
        begin, [&](qsizetype length) { return heightOf(text.first(length) + u'…', width()) <= room; });
    return text.first(std::max(qsizetype { 0 }, *cut - 1)) + u'…';
}

void BannerLabel::resizeEvent(QResizeEvent* event)
{
    QLabel::resizeEvent(event);
    updateHelp();
}

void BannerLabel::showEvent(QShowEvent* event)
{
    QLabel::showEvent(event);
    announce();
}

void BannerLabel::updateHelp()
{
    auto const shown = fitted(width());
    bool const isElided = m_lines == Lines::elided && shown != text();
    bool const isWhole = !isElided && heightOf(shown, width()) <= height();
    HoverHelpTrackingView::of(*this).setText(isWhole ? QString() : text());
}

}
