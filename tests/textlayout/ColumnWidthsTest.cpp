#include "textlayout/ColumnWidths.h"

#include <gmock/gmock.h>

#include <string>

namespace Quillory {
namespace {

using testing::ElementsAreArray;

struct Case {
    std::string name;
    std::vector<ColumnDemand> demands; // narrowest, widest, floor
    double available;
    std::vector<double> widths;
};

class ColumnWidths : public testing::TestWithParam<Case> { };

TEST_P(ColumnWidths, Are_shared_by_need)
{
    EXPECT_THAT(fittedColumnWidths(GetParam().demands, GetParam().available), ElementsAreArray(GetParam().widths));
}

INSTANTIATE_TEST_SUITE_P(All, ColumnWidths,
    testing::Values(Case { "What_fits_is_not_stretched", { { 20, 50, 10 }, { 20, 100, 10 } }, 400, { 50, 100 } },
        Case { "What_just_fits_wraps_nothing", { { 20, 50, 10 }, { 20, 100, 10 } }, 150, { 50, 100 } },
        Case { "A_narrow_column_keeps_its_width_beside_a_long_one", { { 20, 50, 10 }, { 40, 900, 10 } }, 300,
            { 50, 250 } },
        Case {
            "Long_columns_share_evenly", { { 20, 900, 10 }, { 40, 700, 10 }, { 10, 50, 10 } }, 350, { 150, 150, 50 } },
        Case { "A_long_word_is_kept_whole_while_it_fits", { { 200, 900, 10 }, { 40, 900, 10 } }, 300, { 200, 100 } },
        Case {
            "Words_are_broken_before_the_table_gets_too_wide", { { 800, 900, 10 }, { 40, 50, 10 } }, 300, { 260, 40 } },
        Case { "Floors_are_kept_though_they_do_not_fit", { { 90, 90, 80 }, { 90, 90, 70 } }, 100, { 80, 70 } },
        Case { "No_columns", {}, 100, {} }),
    [](auto const& tested) { return tested.param.name; });

}
}
