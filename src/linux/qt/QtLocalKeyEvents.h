#pragma once

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

    // The application object exists already and outlives it.
    explicit QtLocalKeyEvents(KeyCodes keyCodes);

    Registration observe(Monitor monitor) override;

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    KeyCodes m_keyCodes;
    Observers<Answer(RawKeyEvent const&)> m_monitors;
};

}
