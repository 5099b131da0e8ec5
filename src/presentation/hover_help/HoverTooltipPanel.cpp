#include "presentation/hover_help/HoverTooltipPanel.h"

#include <QApplication>
#include <QPainter>
#include <QPainterPath>
#include <QRegion>

#include <algorithm>

namespace Quillory {

namespace {

constexpr double largestWidth = 260; // points of the text, as all that follows
constexpr double largestHeight = 1000;
constexpr int extra = 4;
constexpr QPoint textOrigin { 10, 8 };
constexpr double radius = 6;
constexpr double smallSystemFont = 0.85; // of the desktop's font
constexpr float separatorOpacity = 0.3F;

QFont smallFont()
{
    auto font = QApplication::font();
    if (font.pixelSize() > 0)
        font.setPixelSize(qRound(font.pixelSize() * smallSystemFont));
    else
        font.setPointSizeF(font.pointSizeF() * smallSystemFont);
    return font;
}

QSizeF layOut(QTextLayout& text)
{
    auto option = text.textOption();
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere); // an address has no blanks to wrap at
    text.setTextOption(option);
    QSizeF size;
    text.beginLayout();
    for (auto line = text.createLine(); line.isValid() && size.height() < largestHeight; line = text.createLine()) {
        line.setLineWidth(largestWidth);
        line.setPosition({ 0, size.height() });
        size = { std::max(size.width(), line.naturalTextWidth()), size.height() + line.height() };
    }
    text.endLayout();
    return size;
}

}

HoverTooltipPanel::HoverTooltipPanel(QString const& text, QWidget& host)
    : QWidget(
          &host, Qt::ToolTip | Qt::FramelessWindowHint | Qt::WindowTransparentForInput | Qt::WindowDoesNotAcceptFocus)
    , m_text(text, smallFont())
{
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setPalette(host.palette());
    auto const size = layOut(m_text);
    auto const label = QSize(qCeil(size.width()) + extra, qCeil(size.height()) + extra);
    resize(label + 2 * QSize(textOrigin.x(), textOrigin.y()));
    // Corners are cut off, since only compositors know windows that shine through.
    QPainterPath outline;
    outline.addRoundedRect(QRectF(rect()), radius, radius);
    setMask(QRegion(outline.toFillPolygon().toPolygon()));
}

void HoverTooltipPanel::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    auto const& colors = palette();
    painter.fillRect(rect(), colors.color(QPalette::Active, QPalette::Base));
    painter.setRenderHint(QPainter::Antialiasing);
    auto separator = colors.color(QPalette::Active, QPalette::Text);
    separator.setAlphaF(separatorOpacity);
    auto const hairline = 1 / devicePixelRatioF();
    painter.setPen(QPen(separator, hairline));
    auto const half = hairline / 2;
    painter.drawRoundedRect(QRectF(rect()).adjusted(half, half, -half, -half), radius, radius);
    painter.setPen(colors.color(QPalette::Active, QPalette::Text));
    m_text.draw(&painter, textOrigin);
}

}
