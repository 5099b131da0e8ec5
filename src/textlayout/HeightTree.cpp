#include "textlayout/HeightTree.h"

#include <algorithm>
#include <bit>
#include <utility>

namespace Quillory {

namespace {

std::size_t lowestBit(std::size_t position)
{
    return position & (~position + 1);
}

}

HeightTree::HeightTree(std::vector<double> heights)
    : m_sums(std::move(heights))
{
    for (std::size_t position = 1; position <= m_sums.size(); ++position) {
        auto const parent = position + lowestBit(position);
        if (parent <= m_sums.size())
            m_sums[parent - 1] += m_sums[position - 1];
    }
}

void HeightTree::set(qsizetype index, double height)
{
    auto const difference = height - this->height(index);
    if (difference == 0)
        return;
    for (auto position = static_cast<std::size_t>(index) + 1; position <= m_sums.size();
        position += lowestBit(position))
        m_sums[position - 1] += difference;
}

double HeightTree::height(qsizetype index) const
{
    auto const end = static_cast<std::size_t>(index) + 1;
    auto const start = end - lowestBit(end);
    double result = m_sums[end - 1];
    for (auto position = end - 1; position > start; position -= lowestBit(position))
        result -= m_sums[position - 1];
    return result;
}

double HeightTree::top(qsizetype index) const
{
    double sum = 0;
    for (auto position = static_cast<std::size_t>(index); position > 0; position -= lowestBit(position))
        sum += m_sums[position - 1];
    return sum;
}

qsizetype HeightTree::indexAt(double y) const
{
    std::size_t position = 0;
    double rest = y;
    for (auto step = std::bit_floor(m_sums.size()); step > 0; step /= 2) {
        auto const next = position + step;
        if (next <= m_sums.size() && m_sums[next - 1] <= rest) {
            position = next;
            rest -= m_sums[next - 1];
        }
    }
    return std::min(static_cast<qsizetype>(position), size() - 1);
}

}
