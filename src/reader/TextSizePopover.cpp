#include "reader/TextSizePopover.h"

#include "library/Preferences.h"
#include "reader/Panes.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QSlider>
#include <QVBoxLayout>

#include <algorithm>

namespace Quillory {

namespace {

constexpr int popoverWidth = 240; // points, as all that follows
constexpr int gap = 4;
constexpr int padding = 14;

}

TextSizePopover::TextSizePopover(QWidget& opener, QWidget* parent)
    : QWidget(parent)
    , m_opener(opener)
    , m_value(new QLabel(this))
    , m_slider(new QSlider(Qt::Horizontal, this))
{
    makePane(*this, "card");
    auto* const rows = new QVBoxLayout(this);
    rows->setContentsMargins(padding, padding, padding, padding);
    auto* const top = new QHBoxLayout;
    top->addWidget(new QLabel(tr("Text size"), this), 1);
    top->addWidget(m_value);
    rows->addLayout(top);
    m_slider->setAccessibleName(tr("Text size"));
    m_slider->setRange(static_cast<int>(Preferences::minimumTextSize), static_cast<int>(Preferences::maximumTextSize));
    m_slider->setPageStep(1);
    connect(m_slider, &QSlider::valueChanged, this, [this](int size) { Q_EMIT textSizeChosen(size); });
    rows->addWidget(m_slider);
    auto* const note = new QLabel(tr("Shortcut symbols stay larger than the text."), this);
    note->setObjectName(QStringLiteral("secondary"));
    note->setWordWrap(true);
    rows->addWidget(note);
    setFixedWidth(popoverWidth);
    hide();
}

void TextSizePopover::setTextSize(double size)
{
    QSignalBlocker const silent(m_slider); // a stored size need not be a whole one
    m_slider->setValue(qRound(size));
    m_value->setText(tr("%1 pt").arg(qRound(size)));
}

void TextSizePopover::open()
{
    m_hadKeyboard = window()->focusWidget();
    adjustSize();
    place();
    show();
    raise();
    m_slider->setFocus(Qt::PopupFocusReason);
    QApplication::instance()->installEventFilter(this);
}

// Under the button, as far as the window reaches.
void TextSizePopover::place()
{
    auto const below = m_opener.mapTo(parentWidget(), QPoint(m_opener.width() / 2, m_opener.height() + gap));
    auto const rightmost = parentWidget()->width() - width() - gap;
    move(std::clamp(below.x() - width() / 2, gap, std::max(gap, rightmost)), below.y());
}

void TextSizePopover::close()
{
    if (isHidden()) // also when only its window is hidden
        return;
    if (m_hadKeyboard && !m_hadKeyboard->isHidden())
        m_hadKeyboard->setFocus(Qt::PopupFocusReason);
    hide();
}

void TextSizePopover::hideEvent(QHideEvent* event)
{
    QApplication::instance()->removeEventFilter(this);
    QWidget::hideEvent(event);
}

void TextSizePopover::keyPressEvent(QKeyEvent* event)
{
    bool const ends = event->key() == Qt::Key_Escape || event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (ends)
        close();
    else
        QWidget::keyPressEvent(event);
}

bool TextSizePopover::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::MouseButtonPress && watched->isWidgetType()) {
        auto const* const pressed = static_cast<QWidget const*>(watched);
        bool const isInside = pressed == this || isAncestorOf(pressed) || pressed == &m_opener;
        if (!isInside)
            close();
    } else if (event->type() == QEvent::Resize && watched == parentWidget()) {
        place();
    }
    return QWidget::eventFilter(watched, event);
}

}
