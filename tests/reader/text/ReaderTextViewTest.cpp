#include "reader/text/ReaderTextViewFixture.h"

#include <string>

namespace Quillory {
namespace {

TEST_F(ReaderTextViewTest, Keys_scroll_by_geometry)
{
    show(paragraphs(300));
    settle();
    struct Case {
        Qt::Key key;
        Qt::KeyboardModifiers modifiers;
        double from, by;
    };
    auto const shift = Qt::ShiftModifier, control = Qt::ControlModifier, alt = Qt::AltModifier;
    Case const cases[] {
        { Qt::Key_Down, {}, 1000, 40 },
        { Qt::Key_Up, {}, 1000, -40 },
        { Qt::Key_Up, {}, 10, -10 },
        { Qt::Key_PageDown, {}, 1000, 360 },
        { Qt::Key_PageUp, {}, 1000, -360 },
        { Qt::Key_Space, {}, 1000, 360 },
        { Qt::Key_Space, shift, 1000, -360 },
        { Qt::Key_Home, {}, 1000, -1000 },
        // These select, where one reads.
        { Qt::Key_Right, shift, 1000, 0 },
        { Qt::Key_Down, shift, 1000, 0 },
        { Qt::Key_Right, control, 1000, 0 },
        // Control and Alt belong to a peek that is held.
        { Qt::Key_Down, control | alt, 1000, 40 },
        { Qt::Key_Up, control | alt, 1000, -40 },
    };
    for (auto const& [key, modifiers, from, by] : cases) {
        view.peekModifiers = modifiers.testFlag(alt) ? ModifierFlags::control | ModifierFlags::option
                                                     : ModifierFlags::none;
        view.setSelection({});
        view.setScrollOrigin({ 0, from });
        QTest::keyClick(&view, key, modifiers);
        EXPECT_EQ(view.scrollOrigin(), QPointF(0, from + by)) << key << " with " << modifiers;
        EXPECT_EQ(scroll.verticalScrollBar()->value(), qRound(view.scrollOrigin().y()));
        auto const start = view.selection().isEmpty() ? 0 : view.selection().anchor;
        EXPECT_EQ(start, view.lineRange(start).location) << "a selection begins with a line in sight";
    }
}

TEST_F(ReaderTextViewTest, End_and_the_bar_at_its_end_reach_the_end_of_a_text_not_laid_out_before)
{
    for (auto const byKey : { true, false }) {
        view.setScrollOrigin({});
        show(paragraphs(3000));
        if (byKey)
            QTest::keyClick(&view, Qt::Key_End);
        else
            scroll.verticalScrollBar()->setValue(scroll.verticalScrollBar()->maximum());
        EXPECT_NEAR(view.scrollOrigin().y(), bottom(), 1);
        settle();
        EXPECT_NEAR(view.scrollOrigin().y(), bottom(), 1);
    }
}

TEST_F(ReaderTextViewTest, Keys_navigate_dismiss_and_move_the_selection)
{
    std::string steps;
    view.onNavigate = [&](int step) { steps += step < 0 ? '<' : '>'; };
    view.onDismiss = [&] { steps += 'x'; };
    show(sheet(u"one two\nthree four\n\nfive e\u0301 six"_s));
    struct Case {
        std::string name;
        Qt::Key key;
        Qt::KeyboardModifiers modifiers;
        TextSelection before;
        std::string steps;
        TextSelection after;
    };
    auto const shift = Qt::ShiftModifier;
    auto const control = Qt::ControlModifier;
    Case const cases[] {
        { "left", Qt::Key_Left, {}, { 4, 4 }, "<", { 4, 4 } },
        { "right, on the keypad", Qt::Key_Right, Qt::KeypadModifier, { 4, 4 }, ">", { 4, 4 } },
        { "left during a peek", Qt::Key_Left, Qt::AltModifier, { 4, 4 }, "<", { 4, 4 } },
        { "left ends a selection", Qt::Key_Left, {}, { 4, 7 }, "", { 4, 4 } },
        { "right ends a selection", Qt::Key_Right, {}, { 7, 4 }, "", { 7, 7 } },
        { "escape", Qt::Key_Escape, {}, { 4, 4 }, "x", { 4, 4 } },
        { "escape with a selection and modifiers", Qt::Key_Escape, control, { 4, 7 }, "x", { 4, 7 } },
        { "command left", Qt::Key_Left, Qt::MetaModifier, { 4, 4 }, "", { 4, 4 } },
        { "shift right", Qt::Key_Right, shift, { 4, 4 }, "", { 4, 5 } },
        { "shift left over a cluster", Qt::Key_Left, shift, { 27, 27 }, "", { 27, 25 } },
        { "shift right at the end", Qt::Key_Right, shift, { 32, 32 }, "", { 32, 32 } },
        { "word right", Qt::Key_Right, shift | control, { 8, 8 }, "", { 8, 14 } },
        { "word left over a line feed", Qt::Key_Left, shift | control, { 8, 8 }, "", { 8, 7 } },
        { "shift down keeps the column", Qt::Key_Down, shift, { 1, 1 }, "", { 1, 9 } },
        { "shift down onto an empty line", Qt::Key_Down, shift, { 8, 9 }, "", { 8, 19 } },
        { "shift up at the top", Qt::Key_Up, shift, { 2, 2 }, "", { 2, 0 } },
        { "shift home", Qt::Key_Home, shift, { 12, 12 }, "", { 12, 8 } },
        { "shift end", Qt::Key_End, shift, { 12, 12 }, "", { 12, 18 } },
        { "all the rest", Qt::Key_End, shift | control, { 12, 12 }, "", { 12, 32 } },
        { "paragraph up", Qt::Key_Up, shift | control, { 12, 12 }, "", { 12, 8 } },
        { "select all", Qt::Key_A, control, { 3, 3 }, "", { 0, 32 } },
        { "select all with command", Qt::Key_A, Qt::MetaModifier, { 3, 3 }, "", { 0, 32 } },
    };
    for (auto const& each : cases) {
        steps.clear();
        view.peekModifiers = each.modifiers == Qt::AltModifier ? ModifierFlags::option : ModifierFlags::none;
        view.setSelection(each.before);
        QTest::keyClick(&view, each.key, each.modifiers);
        EXPECT_EQ(steps, each.steps) << each.name;
        EXPECT_EQ(view.selection().anchor, each.after.anchor) << each.name;
        EXPECT_EQ(view.selection().head, each.after.head) << each.name;
    }
    scroll.setFocus();
    EXPECT_EQ(scroll.window()->focusWidget(), &view);
    view.setSelection({ 13, 13 });
    QKeyEvent down(QEvent::KeyPress, Qt::Key_Down, shift); // with Shift held since before
    QCoreApplication::sendEvent(&view, &down);
    scroll.resize(450, 400);
    QCoreApplication::sendEvent(&view, &down);
    EXPECT_EQ(view.selection().head, 20) << "another width has no column";
}

TEST_F(ReaderTextViewTest, A_selection_beyond_the_edge_goes_on_while_the_mouse_rests_and_ends_with_the_button)
{
    show(paragraphs(300));
    mouse(QEvent::MouseButtonPress, { 100, 200 });
    mouse(QEvent::MouseMove, { 100, view.height() + 12.0 });
    auto const begun = view.scrollOrigin().y();
    auto const selected = view.selection().length();
    executor.advance(300ms);
    EXPECT_NEAR(view.scrollOrigin().y(), begun + 10 * 12, 1) << "by as much as the mouse is beyond, every 30 ms";
    EXPECT_GT(view.selection().length(), selected);
    mouse(QEvent::MouseMove, { 100, 100 });
    auto const inside = view.scrollOrigin();
    executor.advance(300ms);
    EXPECT_EQ(view.scrollOrigin(), inside);
    mouse(QEvent::MouseMove, { 100, -12 });
    mouse(QEvent::MouseButtonRelease, { 100, -12 });
    auto const ended = view.scrollOrigin();
    executor.advance(300ms);
    EXPECT_EQ(view.scrollOrigin(), ended);
}

TEST_F(ReaderTextViewTest, Double_and_triple_clicks_select_words_and_lines)
{
    show(sheet(u"git commit --amend\nrun foo_bar, now\n\nlast line"_s));
    struct Case {
        QString at;
        int count;
        QString across; // where a drag goes
        QString selected;
    };
    Case const cases[] {
        { u"commit"_s, 2, {}, u"commit"_s },
        { u"_bar"_s, 2, {}, u"foo_bar"_s },
        { u"commit"_s, 3, {}, u"git commit --amend"_s },
        { u"last"_s, 3, {}, u"last line"_s },
        { u"\nlast"_s, 2, {}, {} },
        { u"commit"_s, 2, u"foo"_s, u"commit --amend\nrun foo_bar"_s },
        { u"foo"_s, 2, u"commit"_s, u"commit --amend\nrun foo_bar"_s },
        { u"run"_s, 3, u"commit"_s, u"git commit --amend\nrun foo_bar, now"_s },
    };
    for (auto const& [at, count, across, expected] : cases) {
        view.setSelection({});
        now += 10'000;
        auto const point = pointAt(at);
        for (int number = 1; number <= count; ++number) {
            mouse(number == 2 ? QEvent::MouseButtonDblClick : QEvent::MouseButtonPress, point);
            if (number == count && !across.isEmpty())
                mouse(QEvent::MouseMove, pointAt(across));
            mouse(QEvent::MouseButtonRelease, number == count && !across.isEmpty() ? pointAt(across) : point);
        }
        EXPECT_EQ(selected(), expected) << at.toStdString() << " x" << count;
    }
    EXPECT_THAT(copied, IsEmpty());
}

TEST_F(ReaderTextViewTest, Find_goes_round_in_both_directions_and_brings_matches_into_sight)
{
    show({ [] {
              AttributedText::Builder builder;
              builder.append(u"Café one\n"_s + u"filler\n"_s.repeated(500) + u"cafe\u0301 two\n"_s
                      + u"filler\n"_s.repeated(500) + u"CAFE three"_s,
                  {}, {});
              return std::move(builder).build();
          }(),
        {} });
    std::vector<qsizetype> const places { 0, 9 + 3500, 9 + 3500 + 10 + 3500 };
    auto const expectAt = [&](std::size_t place) {
        EXPECT_EQ(view.selection().start(), places[place]);
        EXPECT_EQ(view.selection().length(), place == 1 ? 5 : 4);
        auto const rect = view.boundingRect({ view.selection().start(), view.selection().length() });
        EXPECT_TRUE(QRectF(view.scrollOrigin(), QSizeF(view.size())).contains(rect));
    };
    for (auto const place : { 0U, 1U, 2U, 0U }) {
        EXPECT_TRUE(view.findNext(u"cafe"_s, false));
        expectAt(place);
    }
    for (auto const place : { 2U, 1U, 0U, 2U }) {
        EXPECT_TRUE(view.findNext(u"CAFÉ"_s, true));
        expectAt(place);
    }
    EXPECT_FALSE(view.findNext(u"tea"_s, false));
    EXPECT_FALSE(view.findNext(QString(), false));
    expectAt(2);
    settle();
    expectAt(2);
}

TEST_F(ReaderTextViewTest, Code_wider_than_the_view_brings_a_horizontal_bar_and_prose_none)
{
    show(paragraphs(20), 1200);
    EXPECT_EQ(scroll.horizontalScrollBar()->maximum(), 0);
    show(sheet(u"before\n>"_s + u"code"_s.repeated(100)), 1200);
    auto const end = view.boundingRect({ 7, 400 }).right();
    EXPECT_NEAR(scroll.horizontalScrollBar()->maximum(), end + 16 - view.width(), 2) << "to where the code ends";
}

TEST_F(ReaderTextViewTest, A_block_spans_the_visible_width_and_stays_there_when_scrolled_sideways)
{
    show(sheet(u"before\n>"_s + u"code"_s.repeated(100)));
    auto const width = view.width() - 32;
    EXPECT_EQ(view.blockRectangle(0).left(), 16);
    EXPECT_EQ(view.blockRectangle(0).width(), width);
    EXPECT_GE(view.blockRectangle(0).height(), 36);
    view.setScrollOrigin({ 100, 0 });
    EXPECT_EQ(view.blockRectangle(0).left(), 116);
    EXPECT_TRUE(view.blockRectangle(1).isEmpty());
    EXPECT_TRUE(view.blockRectangle(-1).isEmpty());
}

}
}
