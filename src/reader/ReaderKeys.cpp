#include "reader/ReaderKeys.h"

#include "reader/text/EventModifiers.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QWheelEvent>

namespace Quillory {

namespace {

// What the key types with these modifiers alone. With Control it types no letter.
QString textOf(QKeyEvent const& event, Qt::KeyboardModifiers modifiers)
{
    bool const isCharacter = event.key() < Qt::Key_Escape;
    if (!isCharacter || !event.modifiers().testFlag(Qt::ControlModifier) || modifiers.testFlag(Qt::ControlModifier))
        return event.text();
    auto const key = static_cast<char32_t>(event.key());
    auto const upper = QString::fromUcs4(&key, 1);
    return modifiers.testFlag(Qt::ShiftModifier) ? upper : upper.toLower();
}

}

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
    auto const& key = static_cast<QKeyEvent const&>(*event);
    if (auto const modifiers = without(key.modifiers(), m_text.peekModifiers); modifiers != key.modifiers()) {
        QKeyEvent plain(event->type(), key.key(), modifiers, textOf(key, modifiers), key.isAutoRepeat());
        QCoreApplication::sendEvent(watched, &plain);
        event->setAccepted(plain.isAccepted());
        return true;
    }
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
