#include "support/Test.h"
#include "textlayout/TestTexts.h"
#include "textlayout/TextUnits.h"

namespace Quillory {
namespace {

// The box of the character that begins a cell's text.
QRectF boxOf(TextLayout const& layout, QString const& cell)
{
    return layout.boundingRect(layout.text().string().indexOf(cell), 1);
}

void appendTo(AttributedText::Builder& builder, AttributedText const& text)
{
    for (auto const run : text.paragraphRuns())
        builder.appendKnown(QStringView(text.string()).sliced(run.location, run.length), builder.add(TextAttributes()),
            builder.add(builder.add(text.paragraphStyle(run)), text.tableCell(run)));
}

TEST(Table, Cells_stand_on_a_grid_of_padding_and_shared_borders)
{
    struct Case {
        char const* story;
        Rows rows;
        double width;
        bool isWider; // instead of breaking every word
    };
    for (auto const& [story, rows, width, isWider] : {
             Case { "a grid", { { u"one"_s, u"two"_s }, { u"three"_s, u"four"_s } }, 600, false },
             Case { "a long cell", { { u"key"_s, u"prose that goes on "_s.repeated(20) }, { u"next"_s } }, 400, false },
             Case { "ragged rows", { { u"a"_s }, { u""_s, u""_s, u"wide"_s }, { u"b"_s } }, 500, false },
             Case { "many columns", { std::vector<QString>(60, u"words"_s), { u"x"_s } }, 400, true },
         }) {
        SCOPED_TRACE(story);
        AttributedText::Builder builder;
        appendTo(builder, tableText(rows, 0));
        appendTo(builder, tableText({ { u"another table"_s } }, 1));
        auto layout = layoutOf(std::move(builder).build(), width);
        makeAllExact(layout);
        qsizetype position = 0;
        double top = 0;
        std::vector<double> lefts(60);
        for (auto const& row : rows) {
            double height = lineHeight(), least = 0;
            for (std::size_t column = 0; column < row.size(); ++column) {
                auto const box = layout.boundingRect(position, std::max<qsizetype>(row[column].size(), 1));
                position += row[column].size() + 1;
                EXPECT_EQ(box.top(), top + 5.5);
                EXPECT_EQ(box.left(), lefts[column] == 0 ? box.left() : lefts[column]);
                EXPECT_GE(box.left(), least + 5.5);
                least = box.right() + 5;
                height = std::max(height, box.height());
                lefts[column] = box.left();
            }
            EXPECT_LE(least + 0.5, layout.usedWidth());
            top += 0.5 + 10 + height;
        }
        EXPECT_EQ(lefts[0], 5.5);
        EXPECT_EQ(layout.boundingRect(position, 1).topLeft(), QPointF(5.5, top + 0.5 + 5.5));
        EXPECT_EQ(layout.height(), top + 0.5 + 0.5 + 10 + lineHeight() + 0.5);
        EXPECT_TRUE(isWider ? layout.usedWidth() > 60 * 30 : layout.usedWidth() == width);
    }
}

TEST(Table, A_column_goes_by_its_widest_cell_wherever_it_stands)
{
    for (auto const& widest : { u"much wider than all the other cells"_s, u"ширина 幅広い ⇧⌘ ширина"_s }) {
        Rows rows(3'000, { u"iii"_s, u"x"_s });
        rows[2'345][0] = widest;
        auto layout = layoutOf(tableText(rows), 2'000);
        layout.layOutVisible(0, 300);
        auto const column = boxOf(layout, u"x"_s).left() - boxOf(layout, u"iii"_s).left();
        auto const needed = layoutOf(plainText(widest), 2'000).boundingRect(0, widest.size()).width();
        EXPECT_GE(column, needed + 10.5);
        EXPECT_LE(column, needed * 1.05 + 13) << "no wider than what the cell asks for";
        makeAllExact(layout);
        auto const row = 0.5 + 10 + lineHeight();
        EXPECT_NEAR(layout.height(), 3'000 * row + 0.5, 10) << "no cell wraps";
    }
}

TEST(Table, Cells_that_are_not_laid_out_ask_for_little_more_than_they_need)
{
    struct Case {
        QString cell;
        double width;
        double used; // in widths of the cell in one line
    };
    for (auto const& [cell, width, used] : { Case { u"\U0001F600\U0001F600\U0001F600\U0001F600"_s, 2'000, 1.1 },
             { u"漢字"_s.repeated(40), 300, 0 }, { u"words, of letters"_s, 2'000, 1.1 } }) {
        auto layout = layoutOf(tableText(Rows(500, { cell, u"x"_s })), width);
        makeAllExact(layout);
        auto const inLine = layoutOf(plainText(cell), 9'000).boundingRect(0, cell.size()).width();
        auto const column = boxOf(layout, u"x"_s).left() - boxOf(layout, cell).left();
        EXPECT_LE(column, used > 0 ? used * inLine + 13 : width) << cell.toStdString();
        EXPECT_EQ(layout.usedWidth(), width) << cell.toStdString();
    }
}

// Columns of a fixed share each, all in one row, as sheets of shortcuts have them.
AttributedText columnsText(int columns, int paragraphs)
{
    AttributedText::Builder builder;
    for (int column = 0; column < columns; ++column) {
        TableBlock const block { .columns = columns,
            .padding = 10,
            .border = column > 0 ? TableBlock::Border::leftEdge : TableBlock::Border::none,
            .borderWidth = column > 0 ? 0.5 : 0,
            .widths = TableBlock::Widths::fixed,
            .widthPercent = 100.0 / columns };
        ParagraphStyle const style {
            .minimumLineHeight = 40, .paragraphSpacing = 6, .lineSpacing = 2, .rightTabStop = 270, .block = block
        };
        for (int paragraph = 0; paragraph < paragraphs; ++paragraph)
            builder.appendKnown(u"title%1\tend%1\n"_s.arg(column * paragraphs + paragraph),
                builder.add(TextAttributes()), builder.add(builder.add(style), { .column = column }));
    }
    return std::move(builder).build();
}

TEST(Table, Fixed_columns_stand_side_by_side_and_are_as_high_as_what_they_hold)
{
    auto layout = layoutOf(columnsText(3, 500), 900);
    auto const height = 500 * 48 + 20;
    EXPECT_EQ(layout.height(), height) << "before anything is laid out";
    makeAllExact(layout);
    EXPECT_EQ(layout.height(), height);
    for (int column = 0; column < 3; ++column) {
        auto const title = layout.text().string().indexOf(u"title%1\t"_s.arg(column * 500 + 7));
        auto const end = layout.text().string().indexOf(u'\n', title) - 1;
        auto const left = column * 300 + 10 + (column > 0 ? 0.5 : 0);
        EXPECT_EQ(layout.boundingRect(title, 1).topLeft(), QPointF(left, 10 + 7 * 48));
        EXPECT_NEAR(layout.boundingRect(end, 1).right(), left + 270, 0.1) << "text behind a tab ends at its stop";
    }
    auto narrow = layoutOf(columnsText(3, 500), 600);
    makeAllExact(narrow);
    EXPECT_EQ(narrow.height(), height) << "a stop beyond the column's edge wraps nothing";
}

TEST(Table, Chapters_are_cut_between_paragraphs_and_outside_of_tables)
{
    AttributedText::Builder builder;
    builder.append(u"words\n"_s.repeated(800), {}, {});
    auto const start = static_cast<quint32>(builder.length());
    appendTo(builder, tableText(longTable(30)));
    auto const end = static_cast<quint32>(builder.length());
    builder.append(u"behind\n"_s.repeated(50), {}, {});
    auto const text = std::move(builder).build();
    for (qsizetype characters = 1; characters < text.length(); characters += 97) {
        auto const starts = chapterStarts(text, characters);
        EXPECT_EQ(starts.front(), 0U);
        EXPECT_EQ(starts.back(), static_cast<quint32>(text.length()));
        for (std::size_t chapter = 1; chapter < starts.size(); ++chapter) {
            EXPECT_GT(starts[chapter], starts[chapter - 1]);
            EXPECT_EQ(text.string()[static_cast<qsizetype>(starts[chapter]) - 1], u'\n');
            EXPECT_FALSE(starts[chapter] > start && starts[chapter] < end) << starts[chapter];
        }
    }
}

TEST(Table, Places_stay_when_lines_whose_heights_are_known_are_laid_out_anew)
{
    for (auto const& text : { tableText(longTable(40)), tableText(longTable(8)), columnsText(2, 20) }) {
        auto atOnce = layoutOf(text, 300);
        atOnce.layOutVisible(0, 1e6);
        auto layout = layoutOf(text, 300);
        makeAllExact(layout);
        ASSERT_EQ(layout.height(), atOnce.height());
        for (double y = 0; y < layout.height(); y += 7) {
            layout.forgetLines();
            ASSERT_NEAR(layout.positionOf(layout.anchorAt(y)), y, 1e-6);
        }
        for (qsizetype position = 0; position < text.length(); position += 11) {
            layout.forgetLines();
            auto const box = layout.boundingRect(position, 1);
            ASSERT_EQ(box, atOnce.boundingRect(position, 1)) << position;
            auto const there = text.paragraphRunAt(atOnce.anchorAt(box.center().y()).location);
            auto const cell = text.paragraphRuns()[static_cast<std::size_t>(there)];
            ASSERT_LT(box.center().y(), atOnce.boundingRect(cell.location, cell.length).bottom()) << position;
            if (text.string()[position] > u' ') {
                ASSERT_EQ(layout.characterIndexAt(box.center()), position);
            }
        }
    }
}

}
}
