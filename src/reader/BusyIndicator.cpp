#include "reader/BusyIndicator.h"

#include <QPainter>

namespace Quillory {

namespace {

constexpr int side = 14; // points
constexpr double stroke = 2;
constexpr int steps = 12; // of one turn
constexpr std::chrono::milliseconds stepTime { 80 };

}

BusyIndicator::BusyIndicator(Executor& executor, QWidget* parent)
    : QWidget(parent)
    , m_executor(executor)
{
    setFixedSize(side, side);
}

void BusyIndicator::setBusy(bool isBusy)
{
    if (isBusy == (m_state != State::idle))
        return;
    m_state = isBusy ? State::waiting : State::idle;
    setAccessibleName(isBusy ? tr("Loading") : QString());
    if (isBusy)
        m_next = m_executor.after(appearsAfter, [this] { turn(); });
    else
        m_next.end();
    update();
}

// Nobody sees a hidden one turn.
void BusyIndicator::turn()
{
    m_state = State::turning;
    m_step = (m_step + 1) % steps;
    update();
    if (isVisible())
        m_next = m_executor.after(stepTime, [this] { turn(); });
}

void BusyIndicator::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    if (m_state == State::turning)
        turn();
}

void BusyIndicator::paintEvent(QPaintEvent*)
{
    if (m_state != State::turning)
        return;
    constexpr int sixteenths = 16; // of a degree, the toolkit's unit of angles
    constexpr int arc = 270 * sixteenths;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(palette().color(QPalette::PlaceholderText), stroke, Qt::SolidLine, Qt::RoundCap));
    auto const inset = stroke / 2 + 0.5;
    painter.drawArc(QRectF(rect()).adjusted(inset, inset, -inset, -inset), -m_step * 360 * sixteenths / steps, arc);
}

}
