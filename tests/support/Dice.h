#pragma once

#include <array>
#include <cstdint>
#include <random>

namespace Quillory {

// The engine's numbers are the same everywhere; those of the library's distributions are not.
class Dice {
public:
    explicit Dice(std::uint32_t seed)
        : m_engine(seed)
    {
    }

    template<typename Number>
    Number below(Number end)
    {
        return static_cast<Number>(m_engine() % static_cast<std::uint64_t>(end));
    }

    bool oneIn(unsigned count) { return below(count) == 0; }

    template<typename List>
    auto const& anyOf(List const& list)
    {
        return *(std::begin(list) + below(std::ssize(list)));
    }

private:
    std::mt19937 m_engine;
};

}
