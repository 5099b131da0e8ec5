#include "linux/worker/WorkerProtocol.h"

#include <cstring>

namespace Quillory::WorkerProtocol {

namespace {

template<typename Value>
std::optional<std::vector<Value>> valuesOf(std::span<std::byte const> message)
{
    auto const count = message.size() / sizeof(Value);
    if (count == 0 || count > mostItems || message.size() % sizeof(Value) != 0)
        return std::nullopt;
    std::vector<Value> values(count);
    std::memcpy(values.data(), message.data(), message.size());
    return values;
}

}

std::optional<std::vector<Item>> itemsOf(std::span<std::byte const> message)
{
    return valuesOf<Item>(message);
}

std::optional<Pieces> piecesOf(std::vector<Item> const& items, std::span<std::byte const> bytes)
{
    Pieces pieces;
    for (auto const& item : items) {
        if (item.size > bytes.size())
            return std::nullopt;
        pieces.push_back(bytes.first(item.size));
        bytes = bytes.subspan(item.size);
    }
    return bytes.empty() ? std::optional(pieces) : std::nullopt;
}

std::optional<Pieces> answersOf(
    std::span<std::byte const> message, std::size_t expected, std::span<std::byte const> bytes)
{
    auto const sizes = valuesOf<std::uint64_t>(message);
    if (!sizes || sizes->size() != expected)
        return std::nullopt;
    Pieces answers;
    for (auto const size : *sizes) {
        if (size > bytes.size() || aligned(size) > bytes.size())
            return std::nullopt;
        answers.push_back(bytes.first(size));
        bytes = bytes.subspan(aligned(size));
    }
    return bytes.empty() ? std::optional(answers) : std::nullopt;
}

}
