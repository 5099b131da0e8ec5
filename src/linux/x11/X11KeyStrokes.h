#pragma once

#include "linux/x11/FollowedModifierKeys.h"
#include "platform/KeyStrokes.h"
#include "platform/Observers.h"

#include <QAbstractNativeEventFilter>

namespace Quillory {

// The server's key events on their way to the toolkit, seen by a filter that stands there only while somebody observes.
class X11KeyStrokes final : public KeyStrokes, private QAbstractNativeEventFilter {
public:
    // The application object exists already. It and `connection` outlive this.
    explicit X11KeyStrokes(X11Connection& connection);

    Registration observe(Monitor monitor) override;

    // Of an event of that key with that state.
    KeyStroke keyStroke(KeyStroke::Phase phase, std::uint8_t serverKeyCode, std::uint16_t state);

private:
    bool nativeEventFilter(QByteArray const& eventType, void* message, qintptr* result) override;

    FollowedModifierKeys m_modifierKeys;
    Observers<Answer(KeyStroke const&)> m_monitors;
};

}
