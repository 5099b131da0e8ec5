#include "reader/ReaderTextView.h"

#include <QCoreApplication>
#include <QImage>
#include <QScrollBar>
#include <QTest>
#include <QWheelEvent>

#include <gmock/gmock.h>

#include <string>

namespace Quillory {
namespace {

using testing::ElementsAre;

RenderedMarkdown paragraphs(int count)
{
    AttributedText::Builder builder;
    for (int paragraph = 0; paragraph < count; ++paragraph)
        builder.append(QStringLiteral("%1 é ").arg(paragraph).repeated(1 + paragraph * 13 % 70) + u'\n', {}, {});
    return { std::move(builder).build(), {} };
}

RenderedMarkdown codeBlock(QString const& before, QString const& code)
{
    AttributedText::Builder builder;
    ParagraphStyle style;
    style.paragraphSpacingBefore = 8;
    style.paragraphSpacing = 20;
    builder.append(before, {}, {});
    builder.append(code + u'\n', {}, style);
    return { std::move(builder).build(), { { { before.size(), code.size() }, code, true, {} } } };
}

class ReaderTextViewTest : public testing::Test {
protected:
    ReaderTextViewTest()
    {
        view.resize(500, 400);
        view.show();
    }

    void settle()
    {
        ASSERT_TRUE(QTest::qWaitFor([this] { return view.isSettled(); }));
    }
    double bottom() const { return view.verticalScrollBar()->maximum(); }
    QImage picture() { return view.viewport()->grab().toImage(); }

    ReaderTextView view;
};

struct KeyStep {
    std::string name;
    Qt::Key key;
    Qt::KeyboardModifiers modifiers;
    double from;
    double by;
};

class ScrollKeys : public ReaderTextViewTest, public testing::WithParamInterface<KeyStep> { };

TEST_P(ScrollKeys, Move_by_geometry)
{
    view.setRendered(paragraphs(300));
    settle();
    view.setScrollOrigin({ 0, GetParam().from });
    QTest::keyClick(&view, GetParam().key, GetParam().modifiers);
    EXPECT_EQ(view.scrollOrigin(), QPointF(0, GetParam().from + GetParam().by));
    EXPECT_EQ(view.verticalScrollBar()->value(), qRound(view.scrollOrigin().y()));
}

INSTANTIATE_TEST_SUITE_P(All, ScrollKeys,
    testing::Values(KeyStep { "Down", Qt::Key_Down, {}, 1000, 40 }, KeyStep { "Up", Qt::Key_Up, {}, 1000, -40 },
        KeyStep { "Up_stops_at_the_top", Qt::Key_Up, {}, 10, -10 },
        KeyStep { "Page_down", Qt::Key_PageDown, {}, 1000, 360 }, KeyStep { "Page_up", Qt::Key_PageUp, {}, 1000, -360 },
        KeyStep { "Space", Qt::Key_Space, {}, 1000, 360 },
        KeyStep { "Shift_Space", Qt::Key_Space, Qt::ShiftModifier, 1000, -360 },
        KeyStep { "Home", Qt::Key_Home, {}, 1000, -1000 }),
    [](auto const& tested) { return tested.param.name; });

TEST_F(ReaderTextViewTest, End_reaches_the_end_of_a_text_not_laid_out_before)
{
    view.setRendered(paragraphs(3000));
    QTest::keyClick(&view, Qt::Key_End);
    EXPECT_NEAR(view.scrollOrigin().y(), bottom(), 1);
    settle();
    EXPECT_NEAR(view.scrollOrigin().y(), bottom(), 1);
}

TEST_F(ReaderTextViewTest, Left_right_and_escape_are_handed_on)
{
    std::vector<int> steps;
    int dismissed = 0;
    view.onNavigate = [&](int step) { steps.push_back(step); };
    view.onDismiss = [&] { ++dismissed; };
    QTest::keyClick(&view, Qt::Key_Left);
    QTest::keyClick(&view, Qt::Key_Right);
    QTest::keyClick(&view, Qt::Key_Right, Qt::ShiftModifier);
    QTest::keyClick(&view, Qt::Key_Escape);
    QTest::keyClick(&view, Qt::Key_Escape, Qt::ControlModifier);
    EXPECT_THAT(steps, ElementsAre(-1, 1));
    EXPECT_EQ(dismissed, 2);
}

TEST_F(ReaderTextViewTest, The_wheel_scrolls_and_the_origin_is_told)
{
    view.setRendered(paragraphs(300));
    settle();
    std::vector<QPointF> told;
    view.onScroll = [&](QPointF origin) { told.push_back(origin); };
    QWheelEvent wheel({ 50, 50 }, view.viewport()->mapToGlobal(QPointF(50, 50)), {}, { 0, -120 }, Qt::NoButton,
        Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(view.viewport(), &wheel);
    EXPECT_GT(view.scrollOrigin().y(), 0);
    EXPECT_THAT(told, ElementsAre(view.scrollOrigin()));
}

TEST_F(ReaderTextViewTest, An_origin_outside_is_brought_inside)
{
    view.setRendered(paragraphs(300));
    settle();
    view.setScrollOrigin({ 900, -50 });
    EXPECT_EQ(view.scrollOrigin(), QPointF(0, 0));
    view.setScrollOrigin({ 0, 1e9 });
    EXPECT_NEAR(view.scrollOrigin().y(), bottom(), 1);
    view.setRendered(paragraphs(2));
    EXPECT_EQ(view.scrollOrigin(), QPointF(0, 0));
}

TEST_F(ReaderTextViewTest, A_new_width_keeps_the_top_line)
{
    auto const filler = QStringLiteral(
        "é filler that wraps at each of these widths, and takes more than one line of text\n");
    view.setRendered(codeBlock(filler.repeated(100), QStringLiteral("line\n").repeated(100)));
    settle();
    auto const shown = [this] { return view.blockRectangle(0).top() - view.scrollOrigin().y(); };
    view.setScrollOrigin({ 0, view.blockRectangle(0).top() + 8 });
    EXPECT_EQ(shown(), -8);
    for (auto const width : { 700, 420, 500 }) {
        view.resize(width, 400);
        settle();
        EXPECT_EQ(shown(), -8) << width;
    }
}

TEST_F(ReaderTextViewTest, Idle_work_ends_and_leaves_the_text_where_it_was)
{
    view.setRendered(paragraphs(2000));
    view.setScrollOrigin({ 0, 9000 });
    auto const before = picture();
    EXPECT_FALSE(view.isSettled());
    settle();
    EXPECT_EQ(picture(), before);
}

TEST_F(ReaderTextViewTest, A_minimum_code_width_brings_a_horizontal_bar)
{
    view.setRendered(paragraphs(20));
    EXPECT_EQ(view.horizontalScrollBar()->maximum(), 0);
    view.setMinimumCodeWidth(1200);
    EXPECT_EQ(view.horizontalScrollBar()->maximum(), 1200 + 32 - view.viewport()->width());
    view.setMinimumCodeWidth(330);
    EXPECT_EQ(view.horizontalScrollBar()->maximum(), 0);
}

TEST_F(ReaderTextViewTest, A_block_spans_the_visible_width_and_stays_there_when_scrolled_sideways)
{
    view.setRendered(codeBlock(QStringLiteral("before\n"), QStringLiteral("code")));
    view.setMinimumCodeWidth(1200);
    auto const width = view.viewport()->width() - 32;
    EXPECT_EQ(view.blockRectangle(0).left(), 16);
    EXPECT_EQ(view.blockRectangle(0).width(), width);
    EXPECT_GE(view.blockRectangle(0).height(), 36);
    view.setScrollOrigin({ 100, 0 });
    EXPECT_EQ(view.blockRectangle(0).left(), 116);
    EXPECT_TRUE(view.blockRectangle(1).isEmpty());
    EXPECT_TRUE(view.blockRectangle(-1).isEmpty());
}

TEST_F(ReaderTextViewTest, Surface_and_block_follow_the_palette)
{
    view.setRendered(codeBlock(QStringLiteral("before\n"), QStringLiteral("code")));
    auto const inBlock = [this] { return (view.blockRectangle(0).center() - view.scrollOrigin()).toPoint(); };
    EXPECT_EQ(picture().pixelColor(2, 2), QColor(0xFF, 0xFF, 0xFF));
    EXPECT_EQ(picture().pixelColor(inBlock()), QColor(0xF4, 0xF4, 0xF5));

    QPalette dark(QColor(53, 53, 53), QColor(35, 35, 35));
    dark.setColor(QPalette::Text, Qt::white);
    dark.setColor(QPalette::Base, QColor(35, 35, 35));
    view.setPalette(dark);
    EXPECT_EQ(picture().pixelColor(2, 2), QColor(0x23, 0x24, 0x26));
    EXPECT_EQ(picture().pixelColor(inBlock()), QColor(0x30, 0x31, 0x36));
}

}
}
