#include "textlayout/HeightTree.h"

#include <gtest/gtest.h>

#include <numeric>
#include <random>

namespace Quillory {
namespace {

TEST(HeightTree, Agrees_with_plain_sums_through_thousands_of_changes)
{
    std::mt19937 random(7);
    for (std::size_t const size : { 1U, 2U, 7U, 64U, 1000U }) {
        std::uniform_int_distribution<std::size_t> anyIndex(0, size - 1);
        std::uniform_int_distribution<int> anyHeight(0, 200);
        std::vector<double> heights(size);
        for (auto& height : heights)
            height = anyHeight(random) / 2.0;
        HeightTree tree(heights);
        for (int change = 0; change < 2000; ++change) {
            auto const index = anyIndex(random);
            heights[index] = anyHeight(random) / 2.0;
            tree.set(static_cast<qsizetype>(index), heights[index]);

            auto const probed = anyIndex(random);
            auto const top = std::accumulate(
                heights.begin(), heights.begin() + static_cast<std::ptrdiff_t>(probed), 0.0);
            ASSERT_EQ(tree.top(static_cast<qsizetype>(probed)), top);
            ASSERT_EQ(tree.height(static_cast<qsizetype>(probed)), heights[probed]);
            if (heights[probed] > 0) {
                ASSERT_EQ(tree.indexAt(top), static_cast<qsizetype>(probed));
                ASSERT_EQ(tree.indexAt(top + heights[probed] - 0.25), static_cast<qsizetype>(probed));
            }
        }
        EXPECT_EQ(tree.total(), std::accumulate(heights.begin(), heights.end(), 0.0));
        EXPECT_EQ(tree.indexAt(-1), 0) << "what lies outside belongs to the first or the last";
        EXPECT_EQ(tree.indexAt(tree.total() + 1), static_cast<qsizetype>(size) - 1);
    }
    EXPECT_EQ(HeightTree().indexAt(5), -1);
}

}
}
