#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <span>
#include <utility>

namespace Quillory {

// Bytes that nobody can change any more, wherever they lie, and what keeps them. Cheap to copy.
class SealedBytes {
public:
    SealedBytes() = default;
    SealedBytes(std::shared_ptr<void const> owner, std::span<std::byte const> bytes)
        : m_owner(std::move(owner))
        , m_bytes(bytes)
    {
    }

    std::span<std::byte const> bytes() const { return m_bytes; }
    std::shared_ptr<void const> const& owner() const { return m_owner; }

private:
    std::shared_ptr<void const> m_owner;
    std::span<std::byte const> m_bytes;
};

// Takes bytes, one piece after the other.
using ByteSink = std::function<void(std::span<std::byte const>)>;

}
