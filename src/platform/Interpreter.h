#pragma once

#include "platform/SealedBytes.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>

namespace Quillory {

// What a sandbox does with bytes: answers an operation on them into the sink.
using Interpreter = std::function<void(
    std::uint32_t operation, std::uint32_t argument, std::span<std::byte const> bytes, ByteSink const& answer)>;

}
