#pragma once

#include <cstdint>
#include <optional>

// Virtual key codes name keys by their place on the keyboard, whatever is printed on them. The server's key codes do
// the same under other numbers.
namespace Quillory::VirtualKeys {

// Absent for a key that keyboards here don't have, the Function key among them.
std::optional<std::uint8_t> serverKeyCode(std::uint16_t virtualKeyCode);

// Absent for a key that has no virtual key code.
std::optional<std::uint16_t> virtualKeyCode(std::uint8_t serverKeyCode);

}
