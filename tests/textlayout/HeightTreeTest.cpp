#include "textlayout/HeightTree.h"
#include "support/Dice.h"
#include "support/Test.h"

#include <numeric>

namespace Quillory {
namespace {

TEST(HeightTree, Agrees_with_plain_sums_through_thousands_of_changes)
{
    Dice dice(7);
    for (std::size_t const size : { 1U, 2U, 7U, 64U, 1000U }) {
        std::vector<double> heights(size);
        for (auto& height : heights)
            height = dice.below(200) / 2.0;
        HeightTree tree(heights);
        for (int change = 0; change < 2000; ++change) {
            auto const index = dice.below(size);
            heights[index] = dice.below(200) / 2.0;
            tree.set(static_cast<qsizetype>(index), heights[index]);

            auto const probed = dice.below(size);
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
