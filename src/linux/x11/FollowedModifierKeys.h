#pragma once

#include "linux/x11/ModifierKeys.h"
#include "linux/x11/ModifierMap.h"

namespace Quillory {

// The modifier keys under the keyboard map of the moment. Maps change in storms: a change is only noted, and the map
// read again when somebody asks.
class FollowedModifierKeys {
public:
    // `connection` outlives it.
    explicit FollowedModifierKeys(X11Connection& connection);

    // Whether the server has the keyboard extension, and this connection speaks it.
    bool hasExtension() const { return m_firstExtensionEvent.has_value(); }

    // Waits for the server when the map has changed.
    ModifierKeys const& current();
    // The server's modifier bits, likewise.
    ModifierMap const& currentBits();

private:
    void startExtension();
    bool tellsOfNewMap(xcb_generic_event_t const& event) const;

    X11Connection& m_connection;
    std::optional<std::uint8_t> m_firstExtensionEvent;
    std::optional<ModifierKeys> m_keys;
    std::optional<ModifierMap> m_bits;
    Registration m_events;
};

}
