#include "reader/text/CodeCopyButton.h"

#include "presentation/hover_help/HoverHelp.h"
#include "reader/text/FocusRing.h"
#include "rendering/ReaderColors.h"

#include <QEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QPainterPath>

namespace Quillory {

namespace {

constexpr double radius = 5;
constexpr double lineWidth = 1.3;
constexpr double disabledOpacity = 0.35;

// Two sheets of paper, one over the other, about a centre at the origin.
void drawDocuments(QPainter& painter)
{
    QPainterPath back;
    back.moveTo(2, -3);
    back.lineTo(2, -4.5);
    back.quadTo(2, -6.5, 0, -6.5);
    back.lineTo(-4, -6.5);
    back.quadTo(-6, -6.5, -6, -4.5);
    back.lineTo(-6, 0.5);
    back.quadTo(-6, 2.5, -4, 2.5);
    back.lineTo(-3, 2.5);
    painter.drawPath(back);
    painter.drawRoundedRect(QRectF(-2.5, -3, 8, 9.5), 2, 2);
}

void drawCheckmark(QPainter& painter)
{
    QPainterPath mark;
    mark.moveTo(-5.5, 0.5);
    mark.lineTo(-1.5, 5);
    mark.lineTo(5.5, -5);
    painter.drawPath(mark);
}

}

CodeCopyButton::CodeCopyButton(qsizetype tag, QString const& label, QWidget* parent)
    : QAbstractButton(parent)
    , m_tag(tag)
    , m_colors(ColorSet::fromPalette(palette()))
{
    setAccessibleName(CopyLook::label(label, CopyLook::spokenCharacters));
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
    setFixedSize(fixedSize);
}

void CodeCopyButton::refresh(bool copied, bool learningModeEnabled, ColorSet const& colors)
{
    m_copied = copied;
    m_colors = colors;
    auto const look = CopyLook::of(copied, learningModeEnabled);
    hoverHelp(*this, look.help);
    setEnabled(!learningModeEnabled);
    setCursor(learningModeEnabled ? Qt::ArrowCursor : Qt::PointingHandCursor);
    update();
}

bool CodeCopyButton::event(QEvent* event)
{
    // A disabled widget lets presses through to the text below.
    auto const isPress = event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseButtonDblClick;
    if (isPress && !isEnabled()) {
        event->accept();
        return true;
    }
    return QAbstractButton::event(event);
}

void CodeCopyButton::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    auto const fill = ReaderColors::codeBackground.resolved(m_colors.appearance);
    painter.fillRect(rect(), fill);
    if (isEnabled() && underMouse()) {
        painter.setPen(QPen(ReaderColors::codeBorder.resolved(m_colors.appearance), 1));
        painter.setBrush(isDown()                                       ? fill.darker(115)
                : m_colors.appearance == ReaderColors::Appearance::dark ? fill.lighter(120)
                                                                        : QColor(Qt::white));
        painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
    }
    painter.setOpacity(isEnabled() ? 1 : disabledOpacity);
    painter.setPen(QPen(m_colors.label, lineWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    painter.translate(QRectF(rect()).center());
    if (m_copied)
        drawCheckmark(painter);
    else
        drawDocuments(painter);
    if (hasFocus()) {
        painter.resetTransform();
        paintFocusRing(painter, rect(), radius, ReaderColors::commandKey.resolved(m_colors.appearance));
    }
}

void CodeCopyButton::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        click();
    else
        QAbstractButton::keyPressEvent(event);
}

}
