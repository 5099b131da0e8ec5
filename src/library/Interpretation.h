#pragma once

#include <cstdint>

namespace Quillory {

// What became of the tree of a sheet's text. Where it is not complete the text stands as one block of code.
enum class Interpretation : std::uint8_t { complete, underWay, tookTooLong, crashed };

}
