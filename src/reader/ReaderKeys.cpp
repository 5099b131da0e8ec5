#include "reader/ReaderKeys.h"

#include "reader/text/EventModifiers.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QWheelEvent>

namespace Quillory {

ReaderKeys::ReaderKeys(ReaderTextView& text)
    : QObject(&text)
    , m_text(text)
{
    text.installEventFilter(this);
}

void ReaderKeys::watch(QLineEdit& field)
{
    field.installEventFilter(this);
}

bool ReaderKeys::take(QKeyEvent const& event)
{
    auto const command = readerCommandOf(event.key(), m_text.modifiersWithoutPeek(event.modifiers()));
    if (command)
        perform(*command);
    return command.has_value();
}

bool ReaderKeys::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == &m_text)
        return event->type() == QEvent::Wheel && turnTextSize(static_cast<QWheelEvent const&>(*event));
    bool const isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride;
    if (!isKey)
        return false;
    auto& key = static_cast<QKeyEvent&>(*event);
    key.setModifiers(without(key.modifiers(), m_text.peekModifiers)); // with which nothing could be typed
    auto const command = readerCommandOf(key.key(), modifierFlags(key.modifiers()));
    if (!command || command == ReaderCommand::dismiss) // which a field may have a use of its own for
        return false;
    if (event->type() == QEvent::KeyPress)
        take(key);
    event->accept();
    return true;
}

bool ReaderKeys::turnTextSize(QWheelEvent const& wheel)
{
    if (m_text.modifiersWithoutPeek(wheel.modifiers()) != ModifierFlags::control)
        return false;
    m_wheelTurned += wheel.angleDelta().y();
    auto const steps = m_wheelTurned / QWheelEvent::DefaultDeltasPerStep;
    m_wheelTurned -= steps * QWheelEvent::DefaultDeltasPerStep;
    if (steps != 0)
        changeTextSize(steps);
    return true;
}

}
