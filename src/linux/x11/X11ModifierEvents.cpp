#include "linux/x11/X11ModifierEvents.h"

#include "linux/x11/ModifierEventTap.h"
#include "linux/x11/XInput.h"

#include <array>
#include <utility>

namespace Quillory {

X11ModifierEvents::X11ModifierEvents(X11Connection& connection, X11Clock& clock, InputPermission const& permission)
    : m_connection(connection)
    , m_clock(clock)
    , m_permission(permission)
    , m_extension(startXInput(connection.handle()))
    , m_modifierKeys(connection)
{
}

std::optional<ModifierEventObservation> X11ModifierEvents::observe(Receiver receive, Interruption interrupted)
{
    auto const tap = ModifierEventTap::start(*this, std::move(receive), std::move(interrupted));
    if (!tap)
        return std::nullopt;
    return ModifierEventObservation {
        .isActive = [tap] { return tap->isActive(); },
        .cancel = [tap] { tap->stop(); },
    };
}

std::optional<Registration> X11ModifierEvents::selectEvents()
{
    constexpr std::uint32_t rawEvents = XCB_INPUT_XI_EVENT_MASK_RAW_KEY_PRESS | XCB_INPUT_XI_EVENT_MASK_RAW_KEY_RELEASE
        | XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS;
    if (!m_extension || (m_selections == 0 && !ask(rawEvents, XCB_INPUT_XI_EVENT_MASK_HIERARCHY)))
        return std::nullopt;
    ++m_selections;
    return Registration([this] {
        if (--m_selections == 0)
            ask(0, 0);
    });
}

// The masters alone: every keyboard drives one of them, and a key of both would arrive twice.
bool X11ModifierEvents::ask(std::uint32_t rawEvents, std::uint32_t deviceChanges)
{
    struct Mask {
        xcb_input_event_mask_t head;
        std::uint32_t events;
    };
    std::array const masks {
        Mask { { XCB_INPUT_DEVICE_ALL_MASTER, 1 }, rawEvents },
        Mask { { XCB_INPUT_DEVICE_ALL, 1 }, deviceChanges },
    };
    return m_connection.succeeded(
        xcb_input_xi_select_events_checked(m_connection.handle(), m_connection.root(), masks.size(), &masks[0].head));
}

}
