#pragma once

#include <array>
#include <cstdint>
#include <initializer_list>
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

    // Fewer than `end` of the pieces, one after the other.
    template<typename List>
    auto mixture(List const& pieces, int end)
    {
        auto text = *std::begin(pieces);
        text.clear();
        for (auto left = below(end); left > 0; --left)
            text += anyOf(pieces);
        return text;
    }
    template<typename Piece>
    Piece mixture(std::initializer_list<Piece> pieces, int end)
    {
        return mixture<std::initializer_list<Piece>>(pieces, end);
    }

private:
    std::mt19937 m_engine;
};

}
