#include "linux/qt/QtLocalKeyEvents.h"

#include <QCoreApplication>
#include <QKeyEvent>

#include <array>
#include <utility>

namespace Quillory {

namespace {

ModifierFlags flags(Qt::KeyboardModifiers modifiers)
{
    static constexpr auto table = std::to_array<std::pair<Qt::KeyboardModifier, ModifierFlags>>({
        { Qt::ControlModifier, ModifierFlags::control },
        { Qt::AltModifier, ModifierFlags::option },
        { Qt::ShiftModifier, ModifierFlags::shift },
        { Qt::MetaModifier, ModifierFlags::command },
    });
    auto all = ModifierFlags::none;
    for (auto const& [modifier, flag] : table) {
        if (modifiers.testFlag(modifier))
            all = all | flag;
    }
    return all;
}

}

QtLocalKeyEvents::QtLocalKeyEvents(KeyCodes keyCodes)
    : m_keyCodes(std::move(keyCodes))
{
}

Registration QtLocalKeyEvents::observe(Monitor monitor)
{
    if (m_monitors.isEmpty())
        QCoreApplication::instance()->installEventFilter(this);
    return Registration([this, observation = m_monitors.add(std::move(monitor))]() mutable {
        observation.end();
        if (m_monitors.isEmpty())
            QCoreApplication::instance()->removeEventFilter(this);
    });
}

bool QtLocalKeyEvents::eventFilter(QObject* watched, QEvent* event)
{
    bool const isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease;
    // A window hands the event on to its widgets, which would show it again.
    if (!isKey || !watched->isWindowType())
        return false;
    auto const& key = static_cast<QKeyEvent const&>(*event);
    // The window system repeats a held key as releases and presses, of which only the presses mean anything.
    if (event->type() == QEvent::KeyRelease && key.isAutoRepeat())
        return false;
    auto const keyCode = m_keyCodes(key.nativeScanCode());
    if (!keyCode)
        return false;
    RawKeyEvent const raw {
        .kind = event->type() == QEvent::KeyPress ? RawKeyEvent::Kind::down : RawKeyEvent::Kind::up,
        .keyCode = *keyCode,
        .modifiers = flags(key.modifiers()),
        .repeat = key.isAutoRepeat() ? RawKeyEvent::Repeat::yes : RawKeyEvent::Repeat::no,
    };
    return m_monitors.tellUntil(Answer::swallow, raw);
}

}
