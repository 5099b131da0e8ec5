#include "reader/BarButton.h"

#include "reader/BarButtonAccessible.h"
#include "reader/Panes.h"
#include "reader/WindowColors.h"
#include "reader/text/FocusRing.h"
#include "textlayout/SymbolPainting.h"

#include <QEvent>
#include <QKeyEvent>
#include <QPainter>

#include <algorithm>

namespace Quillory {

namespace {

constexpr int smallestSymbol = 18; // points, as all that follows
constexpr int padding = 8;
constexpr int widePadding = 14; // of buttons with a frame
constexpr int gap = 6;          // between symbol and text
constexpr int framedHeight = 32;
constexpr double radius = 6;
constexpr double disabledOpacity = 0.4;

int symbolSideOf(QFontMetrics const& metrics)
{
    return std::max(smallestSymbol, metrics.height());
}

}

BarButton::BarButton(QString symbol, QString const& label, QString const& help, QWidget* parent)
    : QAbstractButton(parent)
    , m_symbol(std::move(symbol))
{
    BarButtonAccessible::install();
    setAccessibleName(label);
    setHelp(*this, help);
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

BarButton* BarButton::withText(QString const& text, QString const& help, Look look, QWidget* parent)
{
    auto* const button = new BarButton({}, text, help, parent);
    button->setText(text);
    button->setLook(look);
    return button;
}

void BarButton::setSymbol(QString const& symbol)
{
    if (symbol == m_symbol)
        return;
    m_symbol = symbol;
    update();
}

void BarButton::setValue(Value const& value)
{
    if (value == m_value)
        return;
    m_value = value;
    QAccessibleValueChangeEvent change(this, value.number);
    QAccessible::updateAccessibility(&change);
}

QSize BarButton::sizeHint() const
{
    auto const height = std::max(m_look == Look::plain ? side : framedHeight, fontMetrics().height() + padding);
    if (text().isEmpty())
        return { height, height };
    auto const symbol = m_symbol.isEmpty() ? 0 : symbolSideOf(fontMetrics()) + gap;
    auto const margin = m_look == Look::plain ? padding : widePadding;
    return { fontMetrics().horizontalAdvance(text()) + symbol + 2 * margin, height };
}

void BarButton::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::FontChange)
        updateGeometry();
    QAbstractButton::changeEvent(event);
}

void BarButton::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        click();
    else
        QAbstractButton::keyPressEvent(event);
}

void BarButton::paintEvent(QPaintEvent*)
{
    auto const colors = WindowColors::fromPalette(palette());
    auto const isProminent = m_look == Look::prominent;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(isEnabled() ? 1 : disabledOpacity);
    QRectF const ground = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    auto const frame = isChecked() || m_look == Look::framed ? QPen(colors.secondary, 1) : QPen(Qt::NoPen);
    painter.setPen(frame);
    painter.setBrush(isProminent ? colors.accent : isChecked() ? colors.learning : QColor(Qt::transparent));
    painter.drawRoundedRect(ground, radius, radius);
    if (isEnabled() && (isDown() || underMouse())) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(isDown() ? colors.pressed : colors.hover);
        painter.drawRoundedRect(ground, radius, radius);
    }

    auto const ink = isProminent ? colors.accentText : colors.label;
    auto const textWidth = text().isEmpty() ? 0 : fontMetrics().horizontalAdvance(text());
    auto const symbolSide = symbolSideOf(fontMetrics());
    auto const symbolWidth = m_symbol.isEmpty() ? 0 : symbolSide;
    auto const between = textWidth > 0 && symbolWidth > 0 ? gap : 0;
    auto const left = (width() - textWidth - symbolWidth - between) / 2;
    if (symbolWidth > 0)
        paintSymbol(painter, m_symbol, QRectF(left, (height() - symbolSide) / 2.0, symbolSide, symbolSide), ink);
    painter.setPen(ink);
    painter.drawText(
        QRect(left + symbolWidth + between, 0, textWidth + 1, height()), Qt::AlignVCenter | Qt::TextSingleLine, text());
    if (hasFocus())
        paintFocusRing(painter, rect(), radius, isProminent ? colors.label : colors.focus);
}

}
