#include "reader/CopyPill.h"

#include "platform/Clipboard.h"

#include <QPainter>

#include <algorithm>

namespace Quillory {

namespace {

constexpr int padding = 14; // points, as all that follows
constexpr int pillHeight = 28;
constexpr int fromBottom = 14;
constexpr QColor ground(40, 40, 43, 235);

}

CopyPill::CopyPill(Executor& executor, QWidget& text)
    : QLabel(text.parentWidget())
    , m_executor(executor)
    , m_text(text)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    hide();
}

void CopyPill::say(QString const& text)
{
    if (text.isEmpty())
        return hide();
    setText(text);
    QSize const size(
        fontMetrics().horizontalAdvance(text) + 2 * padding, std::max(pillHeight, fontMetrics().height() + 8));
    auto const area = m_text.geometry();
    setGeometry(QRect(QPoint(area.center().x() - size.width() / 2, area.bottom() - fromBottom - size.height()), size));
    show();
    raise();
    m_end = m_executor.after(Clipboard::feedbackTime, [this] { hide(); });
}

void CopyPill::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(ground);
    painter.drawRoundedRect(rect(), height() / 2.0, height() / 2.0);
    painter.setPen(Qt::white);
    painter.drawText(rect(), Qt::AlignCenter | Qt::TextSingleLine, text());
}

}
