#pragma once

#include "platform/ModifierEvent.h"
#include "platform/ModifierEventObservation.h"

#include <functional>
#include <optional>

namespace Quillory {

// The keys and mouse presses of the whole session, whatever has the focus. Listens only: nothing is changed or
// swallowed. Main thread only.
class ModifierEvents {
public:
    using Receiver = std::function<void(ModifierEvent const&)>;
    using Interruption = std::function<void()>;

    virtual ~ModifierEvents() = default;

    // Calls `receive` for every event until the observation is cancelled, and `interrupted` when events may have been
    // missed; the observation then goes on, or, where the session no longer permits it, stops and says so. Either
    // receiver may cancel. Absent when the session gives no such events.
    virtual std::optional<ModifierEventObservation> observe(Receiver receive, Interruption interrupted) = 0;
};

}
