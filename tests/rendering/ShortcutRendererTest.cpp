#include "rendering/ShortcutRenderer.h"
#include "rendering/ShortcutColumns.h"
#include "support/Cases.h"
#include "support/Dice.h"
#include "tools/inspect/FixedTextMeasure.h"

#include <QRegularExpression>

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

TEST(ShortcutRenderer, Words_for_keys_change_what_is_shown_copied_and_spoken_and_neither_order_nor_number)
{
    ShortcutSheet sheet;
    ShortcutSheet::Entry entry { .title = u"Palette"_s };
    entry.shortcuts = { { { { { u"command"_s, u"shift"_s }, u"p"_s }, { {}, u"escape"_s } } },
        { { { { u"function"_s, u"option"_s, u"control"_s }, u"pageUp"_s } } }, { { { {}, u"f1"_s } } } };
    sheet.sections = { { .title = u"Section"_s, .entries = { entry } } };
    struct Case {
        KeyNames names;
        QStringList texts;
        QStringList labels;
    };
    for (auto const& [names, texts, labels] : std::initializer_list<Case> {
             { KeyNames::symbols, { u"⇧⌘P → ⎋"_s, u"fn⌃⌥⇞"_s, u"F1"_s },
                 { u"shift command p, then escape"_s, u"function control option pageUp"_s, u"f1"_s } },
             { KeyNames::words, { u"Shift+Super+P → Esc"_s, u"Fn+Ctrl+Alt+PgUp"_s, u"F1"_s },
                 { u"Shift Super P, then Esc"_s, u"Fn Ctrl Alt PgUp"_s, u"F1"_s } },
         }) {
        auto const rendered = ShortcutRenderer::render(sheet, {}, 2000, 16, FixedTextMeasure(), names);
        QStringList copied, spoken;
        for (auto const& target : rendered.copyTargets) {
            copied << target.text;
            spoken << target.accessibilityLabel.value();
            EXPECT_EQ(rendered.text.string().mid(target.range.location, target.range.length), target.text);
        }
        EXPECT_EQ(copied, texts);
        EXPECT_EQ(spoken, QStringList(labels).replaceInStrings(QRegularExpression(u"^"_s), u"Palette, "_s));
    }
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
