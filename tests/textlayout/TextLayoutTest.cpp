#include "support/Dice.h"
#include "support/Test.h"
#include "textlayout/TestTexts.h"

#include <QTextBoundaryFinder>

namespace Quillory {
namespace {

QString words(qsizetype count)
{
    return u"words "_s.repeated(count);
}

TEST(TextLayout, Lines_stand_where_indents_and_spacing_say)
{
    ParagraphStyle const style { .firstLineHeadIndent = 30,
        .headIndent = 12,
        .tailIndent = -64,
        .minimumLineHeight = 40,
        .paragraphSpacingBefore = 8,
        .paragraphSpacing = 20,
        .lineSpacing = 3 };
    auto layout = layoutOf(plainText(words(40) + u'\n' + words(1), style), 400);
    makeAllExact(layout);

    auto const first = layout.boundingRect(0, 1);
    EXPECT_EQ(first.topLeft(), QPointF(30, 8));
    EXPECT_EQ(first.height(), 40);
    auto const firstLineEnd = layout.characterIndexAt({ 399, 20 });
    EXPECT_LE(layout.boundingRect(0, firstLineEnd).right(), 400 - 64);
    auto const second = layout.boundingRect(firstLineEnd + 1, 1);
    EXPECT_EQ(second.topLeft(), QPointF(12, 8 + 40 + 3));

    // 20 behind the first paragraph and 8 before the second, each paragraph's last line with its line spacing.
    auto const lastOfFirst = layout.boundingRect(words(40).size() - 2, 1);
    auto const nextParagraph = layout.boundingRect(words(40).size() + 1, 1);
    EXPECT_EQ(nextParagraph.top() - lastOfFirst.bottom(), 3 + 20 + 8);
    EXPECT_EQ(layout.height(), nextParagraph.bottom() + 3 + 20);

    auto positive = layoutOf(plainText(words(40), { .tailIndent = 150 }), 400);
    EXPECT_LE(positive.boundingRect(0, positive.characterIndexAt({ 399, 5 })).right(), 150);
    auto backwards = layoutOf(plainText(u"שלום"_s, { .firstLineHeadIndent = 10 }), 400);
    EXPECT_NEAR(backwards.boundingRect(0, 1).right(), 390, 0.1) << "from right to left it begins at the right";
}

TEST(TextLayout, Text_behind_a_tab_ends_at_the_stop_from_the_side_that_the_line_begins_at)
{
    for (auto const stop : { 270.0, 299.0, 400.0 }) {
        auto const reached = std::min(stop, 299.0);
        auto forwards = layoutOf(plainText(QStringLiteral("title\tend"), { .rightTabStop = stop }), 300);
        forwards.layOutVisible(0, 100);
        EXPECT_EQ(forwards.height(), lineHeight());
        EXPECT_NEAR(forwards.boundingRect(8, 1).right(), reached, 0.1);
        auto backwards = layoutOf(plainText(QStringLiteral("שלום\tend"), { .rightTabStop = stop }), 300);
        backwards.layOutVisible(0, 100);
        EXPECT_NEAR(backwards.boundingRect(5, 1).left(), 300 - reached, 1) << "letters begin a little to the right";
        EXPECT_EQ(backwards.boundingRect(0, 1).top(), backwards.boundingRect(5, 1).top());
    }
}

TextAttributes const code { .font = { .family = FontAttribute::Family::monospaced }, .background = Color {} };

TEST(TextLayout, Code_stands_in_one_line_clear_of_the_room_at_its_right_and_prose_wraps_at_what_is_visible)
{
    ParagraphStyle const style {
        .firstLineHeadIndent = 8, .headIndent = 8, .tailIndent = -64, .wrapping = ParagraphStyle::Wrapping::atContainer
    };
    for (auto const& line : { u"ls"_s, u"שלום"_s, u"# تثبيت البرنامج"_s, u"שלום "_s.repeated(40), u"x\t"_s.repeated(90),
             u"漢字\U0001F469\u200D\U0001F4BB"_s.repeated(40), u"x"_s.repeated(300) }) {
        AttributedText::Builder builder;
        builder.append(u"short\n"_s + line + u'\n', code, style);
        builder.append(words(40), {}, {});
        auto layout = layoutOf(std::move(builder).build(), { 400, 450 });
        makeAllExact(layout);
        auto const box = layout.boundingRect(6, line.size());
        EXPECT_EQ(layout.lineRange(6).length, line.size()) << line.toStdString();
        EXPECT_GE(box.left(), 8) << line.toStdString();
        EXPECT_LE(box.right(), layout.usedWidth() - 64) << line.toStdString();
        EXPECT_LE(layout.usedWidth(), std::max(400.0, box.right() + 90)) << line.toStdString();
        EXPECT_LE(layout.boundingRect(line.size() + 7, words(40).size()).right(), 400);
    }
}

TEST(TextLayout, Lines_of_code_that_are_not_laid_out_are_taken_to_be_little_wider_than_they_are)
{
    for (auto const& line : { u"é\t"_s.repeated(60), u"é漢\U0001F600"_s.repeated(40), u"é words "_s.repeated(30) }) {
        auto layout = layoutOf(
            plainText((line + u'\n').repeated(50), { .wrapping = ParagraphStyle::Wrapping::atContainer }, code), 400);
        auto const width = layout.boundingRect(0, line.size()).width();
        EXPECT_GE(layout.usedWidth(), width);
        EXPECT_LE(layout.usedWidth(), 1.5 * width) << line.toStdString();
        EXPECT_EQ(layout.lineRange(0).length, line.size());
    }
}

TEST(TextLayout, Code_does_not_break_at_its_hyphens_unless_a_line_has_no_other_break)
{
    auto const string = u"git commit --amend --no-edit git-très-long"_s;
    for (int width = 40; width < 400; width += 9) {
        auto layout = layoutOf(plainText(string, {}, code), width);
        for (TextRange line; line.end() < string.size(); line = layout.lineRange(line.end())) {
            auto const text = string.mid(line.location, line.length);
            EXPECT_TRUE(!text.endsWith(u'-') || !text.contains(u' ')) << width << ": " << text.toStdString();
        }
    }
    auto table = layoutOf(tableText({ { words(20), u"--no-edit"_s } }, 0, code), 250);
    makeAllExact(table);
    EXPECT_EQ(table.lineRange(words(20).size() + 1).length, 9);
}

TEST(TextLayout, Kern_and_raised_text_take_their_room)
{
    auto const laidOut = [](TextAttributes const& attributes) {
        auto layout = layoutOf(plainText(u"nnnn"_s, {}, attributes), 400);
        makeAllExact(layout);
        return layout.boundingRect(0, 4).size();
    };
    EXPECT_NEAR(laidOut({ .kern = 10 }).width() - laidOut({}).width(), 40, 0.5);
    EXPECT_EQ(laidOut({ .baselineOffset = 9 }).height(), lineHeight() + 9);
}

TEST(TextLayout, What_is_taken_as_exact_without_laying_out_really_is)
{
    Dice dice(3);
    int exact = 0;
    for (int round = 0; round < 2'000; ++round) {
        QString string;
        for (int length = round % 60; length > 0; --length)
            string += QChar(' ' + dice.below('~' - ' '));
        TextAttributes attributes { .font = { .family = FontAttribute::Family(round % 2) } };
        auto const width = layoutOf(plainText(string, {}, attributes), 2000).boundingRect(0, string.size()).width();
        ParagraphStyle const style { .headIndent = double(round % 7), .paragraphSpacing = double(round % 3) };
        auto layout = layoutOf(plainText(string, style, attributes), std::floor(width) + round % 9 + round % 12);
        if (!layout.isExact())
            continue;
        ++exact;
        auto const estimated = layout.height();
        // A background takes no room, but keeps a line from being taken for granted.
        attributes.background = Color {};
        auto measured = layoutOf(plainText(string, style, attributes), layout.widths());
        EXPECT_TRUE(string.isEmpty() || !measured.isExact());
        makeAllExact(measured);
        EXPECT_EQ(estimated, measured.height()) << string.toStdString();
    }
    EXPECT_GT(exact, 700);
}

// Paragraphs that no estimate gets right: bold, wide and narrow letters, scripts, line separators.
AttributedText unevenText(int paragraphs)
{
    Dice dice(11);
    TextAttributes const bold { .font = { .size = 22, .weight = FontAttribute::Weight::bold } };
    AttributedText::Builder builder;
    for (int paragraph = 0; paragraph < paragraphs; ++paragraph) {
        builder.append(
            QString(dice.below(400), u"iWé漢\u2028"[paragraph % 5]), paragraph % 3 == 0 ? bold : TextAttributes {}, {});
        builder.append(u"\n", {}, {});
    }
    return std::move(builder).build();
}

TEST(TextLayout, Heights_become_exact_below_a_top_line_that_stays_and_whatever_the_way_to_them)
{
    for (auto const& text : { unevenText(400), tableText(longTable(2'000)) }) {
        auto inOrder = layoutOf(text, 300);
        makeAllExact(inOrder);
        auto layout = layoutOf(text, 700);
        layout.layOutVisible(layout.height() / 2, 600);
        layout.setWidths(300);
        for (auto const share : { 0.9, 0.1 })
            layout.layOutVisible(layout.height() * share, 600);
        auto top = layout.height() * 0.6;
        top += layout.layOutVisible(top, 600);
        EXPECT_FALSE(layout.isExact()) << "neither a text nor a table is laid out at once";
        auto const topLine = layout.anchorAt(top);
        auto const estimated = layout.height();
        for (bool more = true; more;) {
            auto const result = layout.makeSomeExact(top, std::chrono::milliseconds(0));
            top += result.correction;
            more = result.moreLeft;
            ASSERT_EQ(layout.anchorAt(top).location, topLine.location);
            ASSERT_NEAR(layout.anchorAt(top).offset, topLine.offset, 1e-6);
        }
        EXPECT_TRUE(layout.isExact());
        EXPECT_NE(layout.height(), estimated) << "the text was meant to be hard to estimate";
        EXPECT_EQ(layout.height(), inOrder.height());
    }
}

TEST(TextLayout, A_hit_in_the_middle_of_a_character_finds_its_cluster)
{
    Dice dice(5);
    for (int round = 0; round < 40; ++round) {
        QString string;
        for (int piece = 0; piece < 60; ++piece)
            string += dice.anyOf(QStringList { u"a"_s, u"W"_s, u" "_s, u"e\u0301"_s, u"\U0001F469\u200D\U0001F4BB"_s,
                u"漢"_s, u"של"_s, u"بسم"_s, u"12"_s, u"fi"_s, u"\U0001F1E9\U0001F1EA"_s });
        auto layout = layoutOf(plainText(string), 300);
        makeAllExact(layout);
        QTextBoundaryFinder clusters(QTextBoundaryFinder::Grapheme, string);
        for (qsizetype from = 0, to = 0; (to = clusters.toNextBoundary()) > 0; from = to) {
            auto const box = layout.boundingRect(from, to - from);
            if (box.width() < 1)
                continue;
            auto const hit = layout.characterIndexAt(box.center());
            ASSERT_TRUE(hit >= from && hit < to) << "round " << round << ": " << hit << " is not in " << from << " to "
                                                 << to << " of " << string.toStdString();
        }
    }
}

TEST(TextLayout, A_hit_beside_a_line_finds_the_nearest_character_and_never_more_than_there_are)
{
    auto const string = QStringLiteral("first\n\nlast");
    auto layout = layoutOf(plainText(string), 300);
    makeAllExact(layout);
    auto const line = lineHeight();
    EXPECT_EQ(layout.characterIndexAt({ 290, 0.5 * line }), 4);
    EXPECT_EQ(layout.characterIndexAt({ 290, 1.5 * line }), 6) << "the line feed of the empty line";
    EXPECT_EQ(layout.characterIndexAt({ -5, 2.5 * line }), 7);
    EXPECT_EQ(layout.characterIndexAt({ 290, 99 * line }), string.size() - 1);
    EXPECT_EQ(layout.boundingRect(5, 1).width(), 0) << "a line feed has no width";
    EXPECT_EQ(layout.boundingRect(0, string.size()), QRectF(0, 0, 300, 3 * line));

    auto empty = layoutOf({}, 300);
    EXPECT_EQ(empty.layOutVisible(0, 500), 0);
    EXPECT_EQ(empty.height(), 0);
    EXPECT_EQ(empty.characterIndexAt({ 3, 3 }), 0);
    EXPECT_TRUE(empty.boundingRect(0, 0).isNull());
}

}
}
