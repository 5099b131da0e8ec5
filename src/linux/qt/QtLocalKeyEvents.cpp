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

QtLocalKeyEvents::QtLocalKeyEvents(KeyCodes keyCodes, KeyState const& keys)
    : m_keyCodes(std::move(keyCodes))
    , m_keys(keys)
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
    auto const keyCode = m_keyCodes(key.nativeScanCode());
    if (!keyCode)
        return false;
    // The window system repeats a held key as releases and presses, of which only the presses mean anything. The event
    // tells a release as repeated only when the press has arrived with it.
    if (event->type() == QEvent::KeyRelease && m_keys.keyIsDown(*keyCode))
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
