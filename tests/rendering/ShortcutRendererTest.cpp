#include "rendering/ShortcutRenderer.h"
#include "rendering/ShortcutColumns.h"
#include "tools/inspect/FixedTextMeasure.h"

#include <gmock/gmock.h>

#include <numeric>
#include <random>

namespace Quillory {
namespace {

using namespace Qt::StringLiterals;
using testing::Each;
using testing::ElementsAreArray;
using testing::Ge;

// Sections with so many one-line entries each, of one step.
ShortcutSheet sheetOf(std::vector<int> const& entryCounts)
{
    ShortcutSheet sheet;
    for (auto const count : entryCounts) {
        ShortcutSheet::Section section { .title = u"Section"_s };
        for (int entry = 0; entry < count; ++entry)
            section.entries.append({ .title = u"An entry %1"_s.arg(entry), .shortcuts = { { { { {}, u"k"_s } } } } });
        sheet.sections.append(section);
    }
    return sheet;
}

TEST(ShortcutColumns, Sections_are_shared_out_by_what_is_left)
{
    struct Case {
        double width;
        double textSize;
        std::vector<int> entries;
        std::vector<qsizetype> columns;
        double contentWidth;
    };
    // An entry counts 2.8 lines, a section 3 more.
    for (auto const& [width, textSize, entries, columns, contentWidth] : {
             Case { 900, 14, { 1, 1, 1 }, { 2, 1 }, 420 },
             Case { 900, 10, { 1, 1, 1 }, { 1, 1, 1 }, 270 },
             Case { 1300, 13, { 1, 1 }, { 1, 1 }, 620 },
             Case { 2400, 10, { 1, 1, 1, 1, 1, 1, 1, 1, 1, 1 }, { 2, 2, 2, 2, 1, 1 }, 370 },
             Case { 50, 20, { 1, 1 }, { 2 }, 100 },
             Case { 900, 10, { 20, 1, 1, 1, 1 }, { 1, 2, 2 }, 270 },
             Case { 900, 10, { 1, 1, 1, 1, 20 }, { 3, 1, 1 }, 270 },
             Case { 600, 10, { 0, 0, 0, 9 }, { 3, 1 }, 270 },
         }) {
        auto const arranged = ShortcutColumns::arrange(SectionExtent::ofAll(sheetOf(entries)), width, textSize);
        EXPECT_THAT(arranged.sectionCounts, ElementsAreArray(columns)) << width << " at " << textSize;
        EXPECT_EQ(arranged.contentWidth, contentWidth);
    }
}

TEST(ShortcutColumns, No_column_is_empty_and_no_section_is_lost)
{
    std::mt19937 random(7);
    std::uniform_int_distribution<int> anyCount(1, 100);
    std::uniform_int_distribution<int> anyEntries(0, 30);
    std::uniform_real_distribution<double> anyWidth(100, 4000);
    for (int round = 0; round < 300; ++round) {
        std::vector<int> entries(static_cast<std::size_t>(anyCount(random)));
        for (auto& count : entries)
            count = anyEntries(random);
        auto const counts = ShortcutColumns::arrange(SectionExtent::ofAll(sheetOf(entries)), anyWidth(random), 16)
                                .sectionCounts;
        EXPECT_LE(counts.size(), 6U);
        EXPECT_THAT(counts, Each(Ge(1)));
        EXPECT_EQ(std::accumulate(counts.begin(), counts.end(), qsizetype(0)), std::ssize(entries));
    }
}

TEST(ShortcutRenderer, Another_width_moves_sections_and_breaks_but_changes_no_word)
{
    auto const sheet = sheetOf({ 3, 1, 4, 1, 5, 9, 2, 6 });
    auto const rendered = [&sheet](double width) {
        return ShortcutRenderer::render(sheet, {}, width, 16, FixedTextMeasure());
    };
    auto const words = [](RenderedMarkdown const& result) {
        return QString(result.text.string()).replace(u'\t', u'\n');
    };
    auto const narrow = rendered(100);
    EXPECT_FALSE(narrow.text.string().contains(u'\t'));
    for (auto const width : { 400.0, 800.0, 1600.0, 3200.0 }) {
        auto const wide = rendered(width);
        EXPECT_EQ(words(wide), words(narrow));
        EXPECT_EQ(wide.copyTargets, narrow.copyTargets);
        EXPECT_NE(wide.text, narrow.text);
    }
}

}
}
