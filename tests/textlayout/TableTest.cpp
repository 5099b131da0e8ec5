#include "textlayout/TestTexts.h"

#include <gmock/gmock.h>

namespace Quillory {
namespace {

using Rows = std::vector<std::vector<QString>>;

// The box of the character that begins a cell's text.
QRectF boxOf(TextLayout const& layout, QString const& cell)
{
    return layout.boundingRect(layout.text().string().indexOf(cell), 1);
}

TEST(Table, Cells_stand_on_a_grid_of_padding_and_shared_borders)
{
    auto layout = layoutOf(tableText({ { u"one"_qs, u"two"_qs }, { u"three"_qs, u"four"_qs } }), 600);
    makeAllExact(layout);
    auto const line = lineHeight();
    EXPECT_EQ(boxOf(layout, u"one"_qs).topLeft(), QPointF(5.5, 5.5));
    EXPECT_EQ(boxOf(layout, u"three"_qs).topLeft(), QPointF(5.5, 0.5 + 5 + line + 5 + 0.5 + 5));
    EXPECT_EQ(boxOf(layout, u"two"_qs).left(), boxOf(layout, u"four"_qs).left());
    EXPECT_EQ(boxOf(layout, u"two"_qs).top(), 5.5);
    EXPECT_EQ(layout.height(), 2 * (0.5 + 10 + line) + 0.5);
    EXPECT_EQ(layout.usedWidth(), 600) << "a table that fits is no wider than the text";
}

TEST(Table, A_long_cell_wraps_in_its_column_and_makes_the_whole_row_high)
{
    auto const prose = u"prose that goes on "_qs.repeated(20);
    auto layout = layoutOf(tableText({ { u"key"_qs, prose }, { u"next"_qs, u"x"_qs } }), 400);
    makeAllExact(layout);
    auto const prosePosition = layout.text().string().indexOf(prose);
    auto const box = layout.boundingRect(prosePosition, prose.size());
    EXPECT_GT(box.height(), 4 * lineHeight());
    EXPECT_LE(box.right(), 400 - 5.5);
    EXPECT_EQ(boxOf(layout, u"next"_qs).top(), box.bottom() + 5 + 0.5 + 5);
}

TEST(Table, Ragged_rows_empty_cells_and_a_second_table_keep_to_their_places)
{
    AttributedText::Builder builder;
    auto const append = [&builder](AttributedText const& text) {
        for (auto const& run : text.paragraphRuns())
            builder.appendKnown(QStringView(text.string()).sliced(run.location, run.length),
                builder.add(TextAttributes()), builder.add(builder.add(text.paragraphStyle(run)), text.tableCell(run)));
    };
    append(tableText({ { u"a"_qs }, { u""_qs, u""_qs, u"wide"_qs }, {}, { u"b"_qs } }, 0));
    append(tableText({ { u"c"_qs } }, 1));
    auto layout = layoutOf(std::move(builder).build(), 500);
    makeAllExact(layout);
    auto const row = 0.5 + 10 + lineHeight();
    EXPECT_EQ(boxOf(layout, u"b"_qs).topLeft(), QPointF(5.5, 2 * row + 5.5));
    EXPECT_EQ(boxOf(layout, u"c"_qs).topLeft(), QPointF(5.5, 3 * row + 0.5 + 5.5));
    EXPECT_GT(boxOf(layout, u"wide"_qs).left(), boxOf(layout, u"a"_qs).right());
}

TEST(Table, Too_many_columns_make_it_wider_instead_of_breaking_every_word)
{
    auto layout = layoutOf(tableText({ std::vector<QString>(60, u"words"_qs) }), 400);
    layout.layOutVisible(0, 300);
    EXPECT_GT(layout.usedWidth(), 60 * 30);
    EXPECT_EQ(layout.height(), 0.5 + 10 + lineHeight() + 0.5);
}

Rows longTable(int count)
{
    Rows rows;
    for (int row = 0; row < count; ++row)
        rows.push_back({ u"row%1;"_qs.arg(row), u"é words "_qs.repeated(row * 7 % 40) });
    return rows;
}

TEST(Table, A_hit_in_a_cell_finds_its_text)
{
    auto layout = layoutOf(tableText(longTable(30)), 400);
    makeAllExact(layout);
    for (int row = 0; row < 30; ++row) {
        auto const position = layout.text().string().indexOf(u"row%1;"_qs.arg(row));
        EXPECT_EQ(layout.characterIndexAt(layout.boundingRect(position + 2, 1).center()), position + 2);
    }
}

TEST(Table, The_top_line_stays_while_its_other_rows_become_exact)
{
    auto layout = layoutOf(tableText(longTable(2'000)), 300);
    auto top = layout.height() / 2;
    top += layout.layOutVisible(top, 400);
    EXPECT_FALSE(layout.isExact()) << "a table is not laid out at once";
    auto const topLine = layout.anchorAt(top);
    for (bool more = true; more;) {
        auto const result = layout.makeSomeExact(top, std::chrono::milliseconds(1));
        top += result.correction;
        more = result.moreLeft;
        ASSERT_EQ(layout.anchorAt(top).location, topLine.location);
        ASSERT_NEAR(layout.anchorAt(top).offset, topLine.offset, 1e-6);
    }

    auto inOrder = layoutOf(tableText(longTable(2'000)), 300);
    makeAllExact(inOrder);
    EXPECT_EQ(layout.height(), inOrder.height());
}

}
}
