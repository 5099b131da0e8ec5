#pragma once

#include "linux/x11/HeldKeys.h"
#include "platform/ModifierEvents.h"

#include <xcb/xinput.h>

#include <memory>

namespace Quillory {

class X11ModifierEvents;

// One observation of the server's raw events. It lives as long as the observation that was made for it.
class ModifierEventTap final : public std::enable_shared_from_this<ModifierEventTap> {
public:
    // Absent when the server refuses. `source` outlives it.
    static std::shared_ptr<ModifierEventTap> start(
        X11ModifierEvents& source, ModifierEvents::Receiver receive, ModifierEvents::Interruption interrupted);

    bool isActive() const;
    void stop();

private:
    ModifierEventTap(
        X11ModifierEvents& source, ModifierEvents::Receiver receive, ModifierEvents::Interruption interrupted);
    bool listen();

    void handle(xcb_generic_event_t const& event);
    void handleKey(xcb_input_raw_key_press_event_t const& event, bool isDown);
    void handleButton(xcb_input_raw_button_press_event_t const& event);
    void handleDeviceChange();
    void report(ModifierEvent::Type type, std::uint16_t keyCode, xcb_timestamp_t time);

    X11ModifierEvents& m_source;
    ModifierEvents::Receiver const m_receive;
    ModifierEvents::Interruption const m_interrupted;
    // Some senders of synthetic keys let a modifier go twice.
    KeySet m_down;
    Registration m_selection;
    Registration m_events;
};

}
