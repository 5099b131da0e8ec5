#pragma once

#include "input/ModifierGesture.h"
#include "input/ModifierGestureRecognizer.h"
#include "platform/Executor.h"
#include "platform/InputPermission.h"
#include "platform/KeyState.h"
#include "platform/Lifetime.h"
#include "platform/ModifierEvents.h"

#include <functional>
#include <optional>

namespace Quillory {

// Watches the session for the gesture on the selected modifier and says when it begins and ends. Whatever else is
// pressed ends an attempt; another modifier ends a gesture as well. Nothing is retried by itself: what is lost comes
// back with the next `configure`. Main thread only.
class ModifierGestureMonitor {
public:
    // All that it needs of the platform.
    struct Operations {
        std::function<std::optional<ModifierEventObservation>(ModifierEvents::Receiver, ModifierEvents::Interruption)>
            observeEvents;
        std::function<bool()> permissionGranted;
        std::function<bool(std::uint16_t keyCode)> keyIsDown;

        // Those of these services, which outlive the monitor.
        static Operations of(ModifierEvents& events, InputPermission const& permission, KeyState const& keys);
    };

    // Starts nothing. `executor` outlives it.
    ModifierGestureMonitor(Executor& executor, Operations operations);
    // Ends the observation; `ended` is not called.
    ~ModifierGestureMonitor();
    ModifierGestureMonitor(ModifierGestureMonitor const&) = delete;
    ModifierGestureMonitor& operator=(ModifierGestureMonitor const&) = delete;

    // Brings it in line with the user's choice and with the permission. Leaves what runs well alone, and starts over
    // what has died.
    void configure(ModifierGesture gesture, bool isEnabled);

    // Abandons what is in progress.
    void reset();

    // The same, and stops observing until the next `configure`.
    void stop();

    ModifierGesture selection() const { return m_selection; }
    ModifierGestureRecognizer const& recognizer() const { return m_recognizer; }
    bool isObserving() const { return m_observation.has_value(); }

    // Called once when the gesture becomes active, with the modifier's flag and the key that is held, and once when
    // it stops for whatever reason. Set by the owner after construction.
    std::function<void(ModifierFlags flags, std::uint16_t keyCode)> began;
    std::function<void()> ended;

private:
    bool mustAct(ModifierGesture gesture, bool isEnabled) const;
    void cancelObservation();
    void startObserving();
    void handle(ModifierEvent const& event);
    void follow(ModifierEvent const& event, bool isDown);
    void checkHold(std::uint16_t keyCode);

    Executor& m_executor;
    Operations const m_operations;
    ModifierGesture m_selection = ModifierGesture::off;
    ModifierGestureRecognizer m_recognizer;
    std::optional<ModifierEventObservation> m_observation;
    Registration m_holdTask;
    Lifetime m_lifetime;
};

}
