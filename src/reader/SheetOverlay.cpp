#include "reader/SheetOverlay.h"

#include <QMouseEvent>
#include <QPainter>
#include <QVBoxLayout>

namespace Quillory {

namespace {

constexpr int margin = 12; // points around the content
constexpr QColor dim(0, 0, 0, 110);

}

SheetOverlay::SheetOverlay(QWidget* content, QWidget& view)
    : QWidget(&view)
    , m_hadKeyboard(view.window()->focusWidget())
{
    auto* const rows = new QVBoxLayout(this);
    rows->setContentsMargins(margin, margin, margin, margin);
    rows->addWidget(content, 0, Qt::AlignCenter);
    view.installEventFilter(this);
    setGeometry(view.rect());
    raise();
    show();
    content->setFocus(Qt::PopupFocusReason);
}

void SheetOverlay::close()
{
    hide();
    if (m_hadKeyboard && !m_hadKeyboard->isHidden())
        m_hadKeyboard->setFocus(Qt::PopupFocusReason);
    deleteLater(); // a click in it may be going on
    Q_EMIT closed();
}

bool SheetOverlay::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Resize && watched == parentWidget())
        setGeometry(parentWidget()->rect());
    return QWidget::eventFilter(watched, event);
}

void SheetOverlay::paintEvent(QPaintEvent*)
{
    QPainter(this).fillRect(rect(), dim);
}

void SheetOverlay::mousePressEvent(QMouseEvent* event)
{
    event->accept();
}

void SheetOverlay::wheelEvent(QWheelEvent* event)
{
    event->accept();
}

}
