#include "rendering/ShortcutRenderer.h"
#include "rendering/ShortcutColumns.h"
#include "support/Cases.h"
#include "support/Dice.h"
#include "tools/inspect/FixedTextMeasure.h"

#include <numeric>

namespace Quillory {
namespace {

// Sections with so many one-line entries each, of one step.
ShortcutSheet sheetOf(QVariantList const& entryCounts)
{
    ShortcutSheet sheet;
    for (auto const& count : entryCounts) {
        ShortcutSheet::Section section { .title = u"Section"_s };
        for (int entry = 0; entry < count.toInt(); ++entry)
            section.entries.append({ .title = u"An entry %1"_s.arg(entry), .shortcuts = { { { { {}, u"k"_s } } } } });
        sheet.sections.append(section);
    }
    return sheet;
}

ShortcutColumns arranged(ShortcutSheet const& sheet, double width, double textSize)
{
    return ShortcutColumns::arrange(SectionExtent::ofAll(sheet), width, textSize);
}

TEST(ShortcutColumns, Sections_are_shared_out_by_what_is_left)
{
    // An entry counts 2.8 lines, a section 3 more.
    forEachCase(u"columns"_s, [](auto const& row) {
        auto const columns = arranged(sheetOf(row[2].toArray().toVariantList()), row[0].toDouble(), row[1].toDouble());
        QVariantList const counts(columns.sectionCounts.begin(), columns.sectionCounts.end());
        EXPECT_EQ(QJsonArray::fromVariantList(counts), row[3].toArray());
        EXPECT_EQ(columns.contentWidth, row[4].toDouble());
    });
}

TEST(ShortcutRenderer, Another_width_moves_sections_and_breaks_but_loses_none_and_changes_no_word)
{
    Dice dice(7);
    for (int round = 0; round < 100; ++round) {
        QVariantList entries;
        for (auto sections = 1 + dice.below(40); sections > 0; --sections)
            entries << dice.below(30);
        auto const sheet = sheetOf(entries);
        auto const width = 400.0 + dice.below(4000);
        auto const counts = arranged(sheet, width, 16).sectionCounts;
        EXPECT_LE(counts.size(), 6U);
        EXPECT_THAT(counts, Each(Ge(1)));
        EXPECT_EQ(std::accumulate(counts.begin(), counts.end(), qsizetype(0)), entries.size());

        auto const narrow = ShortcutRenderer::render(sheet, {}, 100, 16, FixedTextMeasure());
        auto const wide = ShortcutRenderer::render(sheet, {}, width, 16, FixedTextMeasure());
        EXPECT_FALSE(narrow.text.string().contains(u'\t'));
        EXPECT_EQ(QString(wide.text.string()).replace(u'\t', u'\n'), narrow.text.string());
        EXPECT_EQ(wide.copyTargets, narrow.copyTargets);
        EXPECT_NE(wide.text, narrow.text);
    }
}

}
}
