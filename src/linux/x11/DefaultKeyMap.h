#pragma once

#include <QString>

#include <cstdint>
#include <memory>
#include <optional>

struct xkb_keymap;

namespace Quillory {

// The keyboard map that XKB_DEFAULT_LAYOUT and its like name, else the system's usual one: for a start without a server.
class DefaultKeyMap {
public:
    DefaultKeyMap();

    // X11's name for what the key with this virtual key code gives by itself.
    std::optional<QString> symbolName(std::uint16_t keyCode) const;

private:
    std::shared_ptr<xkb_keymap> m_keymap; // null where the system has none
};

}
