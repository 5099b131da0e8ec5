#pragma once

#include "linux/x11/FollowedModifierKeys.h"
#include "linux/x11/ServerTime.h"
#include "linux/x11/X11Clock.h"
#include "platform/InputPermission.h"
#include "platform/ModifierEvents.h"

namespace Quillory {

// The server's raw keys and buttons: they grab nothing and arrive whatever has the focus or holds the keyboard, of
// every keyboard, plugged in later too. Nothing is asked of the server while nobody observes.
class X11ModifierEvents final : public ModifierEvents {
public:
    // All outlive it. `connection` must not be one that grabs keys: raw events pause there while a grab lasts.
    // Notes the times of modifier keys in `clock`.
    X11ModifierEvents(X11Connection& connection, X11Clock& clock, InputPermission const& permission);

    // It outlives the observation. A change of the session's keyboards is an interruption.
    std::optional<ModifierEventObservation> observe(Receiver receive, Interruption interrupted) override;

private:
    friend class ModifierEventTap;

    std::optional<Registration> selectEvents();
    bool ask(std::uint32_t rawEvents, std::uint32_t deviceChanges);

    X11Connection& m_connection;
    X11Clock& m_clock;
    InputPermission const& m_permission;
    std::optional<std::uint8_t> const m_extension;
    FollowedModifierKeys m_modifierKeys;
    ServerTime m_serverTime;
    int m_selections = 0;
};

}
