#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

// What passes between the program and a worker, in messages on a socket and in two memory files that come along with each
// request: one with the bytes of all items, one for all answers. Neither side trusts the other. All that a worker sends
// are numbers; descriptors go one way only.
//
// The worker's first message is `workerIsReady`, once it is confined.
namespace Quillory::WorkerProtocol {

// One piece of work in a request. Its bytes follow those of the items before it without a gap.
struct Item {
    std::uint32_t operation = 0;
    std::uint32_t argument = 0;
    std::uint64_t size = 0;
};

inline constexpr int socket = 3; // the worker's one descriptor
inline constexpr std::uint64_t workerIsReady = 0x51'75'69'6c'6c'30'30'31;
inline constexpr std::size_t mostItems = 64; // in one request
inline constexpr std::uint64_t answerLimit = std::uint64_t { 256 } << 20U; // bytes, of all answers to one request
inline constexpr std::uint64_t answerAlignment = 16; // each answer begins at a multiple

using Pieces = std::vector<std::span<std::byte const>>;

// The bytes of each item of a request. Absent for a message that is none, or does not fit the bytes.
std::optional<std::vector<Item>> itemsOf(std::span<std::byte const> message);
std::optional<Pieces> piecesOf(std::vector<Item> const& items, std::span<std::byte const> bytes);

// The answers, whose sizes are the message, in the bytes that came along. Absent likewise.
std::optional<Pieces> answersOf(
    std::span<std::byte const> message, std::size_t expected, std::span<std::byte const> bytes);

constexpr std::uint64_t aligned(std::uint64_t size)
{
    return (size + answerAlignment - 1) / answerAlignment * answerAlignment;
}

}
