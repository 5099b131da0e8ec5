#pragma once

#include "platform/KeyState.h"
#include "platform/LocalKeyEvents.h"
#include "platform/Observers.h"

#include <QObject>

#include <cstdint>
#include <functional>
#include <optional>

namespace Quillory {

// The key events that reach the application object, seen by a filter that stands there only while somebody observes.
class QtLocalKeyEvents final : public QObject, public LocalKeyEvents {
public:
    // The virtual key code of a key by the code that the window system gives it. Absent for a key without one.
    using KeyCodes = std::function<std::optional<std::uint16_t>(std::uint32_t nativeScanCode)>;

    // The application object exists already and outlives it, as `keys` do.
    QtLocalKeyEvents(KeyCodes keyCodes, KeyState const& keys);

    Registration observe(Monitor monitor) override;

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    KeyCodes m_keyCodes;
    KeyState const& m_keys;
    Observers<Answer(RawKeyEvent const&)> m_monitors;
};

}
