#pragma once

#include "platform/Registration.h"

#include <QString>

#include <cstdint>
#include <functional>
#include <optional>

namespace Quillory {

// The characters of the keys under the keyboard layout in use: of several layouts the one that is switched to, as long
// as it can write ASCII, else the first that can. Main thread only.
class KeyboardLayout {
public:
    virtual ~KeyboardLayout() = default;

    // The character of the key with this virtual key code without any modifier. Absent when it is not exactly one.
    virtual std::optional<QString> character(std::uint16_t keyCode) const = 0;

    // The virtual key code of the key that gives the symbol by itself. Symbols have the names that X11 gives them,
    // such as "a", "Tab" or "Page_Up".
    virtual std::optional<std::uint16_t> keyCode(QString const& symbolName) const = 0;

    // The symbol that the key with this virtual key code gives by itself, named as above.
    virtual std::optional<QString> symbolName(std::uint16_t keyCode) const = 0;

    // Calls `changed` after the answers above may have changed.
    virtual Registration observeChanges(std::function<void()> changed) = 0;
};

}
