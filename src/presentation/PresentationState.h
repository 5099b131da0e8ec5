#pragma once

#include <cstdint>

namespace Quillory {

// Whether the reader panel should be on screen.
enum class PresentationState : std::uint8_t { closed = 0, panel = 1 };

}
