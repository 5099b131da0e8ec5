#include "textlayout/ColumnWidths.h"

#include "support/Test.h"

namespace Quillory {
namespace {

TEST(ColumnWidths, Are_shared_by_need)
{
    struct Case {
        char const* what;
        std::vector<ColumnDemand> demands; // narrowest, widest, floor
        double available;
        std::vector<double> widths;
    };
    for (auto const& [what, demands, available, widths] : {
             Case { "what fits is not stretched", { { 20, 50, 10 }, { 20, 100, 10 } }, 400, { 50, 100 } },
             Case { "what just fits wraps nothing", { { 20, 50, 10 }, { 20, 100, 10 } }, 150, { 50, 100 } },
             Case { "a narrow one keeps its width", { { 20, 50, 10 }, { 40, 900, 10 } }, 300, { 50, 250 } },
             Case { "long ones share evenly", { { 20, 900, 10 }, { 40, 700, 10 }, { 10, 50, 10 } }, 350,
                 { 150, 150, 50 } },
             Case { "a long word is kept whole", { { 200, 900, 10 }, { 40, 900, 10 } }, 300, { 200, 100 } },
             Case { "words break before it is too wide", { { 800, 900, 10 }, { 40, 50, 10 } }, 300, { 260, 40 } },
             Case { "floors are kept", { { 90, 90, 80 }, { 90, 90, 70 } }, 100, { 80, 70 } },
             Case { "no columns", {}, 100, {} },
         })
        EXPECT_THAT(fittedColumnWidths(demands, available), ElementsAreArray(widths)) << what;
}

}
}
