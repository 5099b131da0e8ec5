#include "reader/ReaderScrollView.h"
#include "support/ManualExecutor.h"

#include <QCoreApplication>
#include <QImage>
#include <QMenu>
#include <QMouseEvent>
#include <QScrollBar>
#include <QTest>
#include <QWheelEvent>

#include <gmock/gmock.h>

#include <string>

namespace Quillory {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

RenderedMarkdown paragraphs(int count)
{
    AttributedText::Builder builder;
    for (int paragraph = 0; paragraph < count; ++paragraph)
        builder.append(QStringLiteral("%1 é ").arg(paragraph).repeated(1 + paragraph * 13 % 70) + u'\n', {}, {});
    return { std::move(builder).build(), {} };
}

// "$code$" is a target within its line, a line that begins with ">" a code block.
RenderedMarkdown sheet(QString const& source)
{
    ParagraphStyle block;
    block.paragraphSpacingBefore = 8;
    block.paragraphSpacing = 20;
    AttributedText::Builder builder;
    std::vector<CopyTarget> targets;
    for (auto const& line : source.split(u'\n')) {
        auto const isBlock = line.startsWith(u'>');
        auto const parts = isBlock ? QStringList { QString(), line.mid(1) } : line.split(u'$');
        for (qsizetype part = 0; part < parts.size(); ++part) {
            if (part % 2 == 1)
                targets.push_back({ { builder.length(), parts[part].size() }, parts[part], isBlock, {} });
            builder.append(parts[part], {}, isBlock ? block : ParagraphStyle());
        }
        builder.append(u"\n", {}, isBlock ? block : ParagraphStyle());
    }
    return { std::move(builder).build(), std::move(targets) };
}

class ReaderTextViewTest : public testing::Test {
protected:
    ReaderTextViewTest()
    {
        scroll.resize(500, 400);
        scroll.show();
        view.onCopy = [this](QString const& text) {
            if (isClipboardFull)
                return false;
            copied.append(text);
            return true;
        };
    }

    void settle()
    {
        ASSERT_TRUE(QTest::qWaitFor([this] { return view.isSettled(); }));
    }
    double bottom() const { return scroll.verticalScrollBar()->maximum(); }
    QImage picture() { return view.grab().toImage(); }
    QString selected() const
    {
        return view.rendered().text.string().mid(view.selection().start(), view.selection().length());
    }
    void setMinimumCodeWidth(double width)
    {
        scroll.minimumCodeWidth = width;
        scroll.layOutText();
    }

    qsizetype positionOf(QString const& text) const { return view.rendered().text.string().indexOf(text); }
    // The middle of the character's left half, which is where a caret before it stands nearest.
    QPointF pointAt(qsizetype position) const
    {
        auto const box = view.boundingRect({ position, 1 }).translated(-view.scrollOrigin());
        return { box.left() + box.width() / 4, box.center().y() };
    }
    QPointF pointAt(QString const& text) const { return pointAt(positionOf(text)); }

    void mouse(QEvent::Type type, QPointF point, Qt::KeyboardModifiers modifiers = {})
    {
        auto const buttons = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
        QMouseEvent event(type, point, view.mapToGlobal(point),
            type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton, buttons, modifiers);
        event.setTimestamp(now += 10);
        QCoreApplication::sendEvent(&view, &event);
    }
    void click(QPointF point, Qt::KeyboardModifiers modifiers = {}, QPointF moved = {}, int count = 1)
    {
        now += 10'000;
        for (int number = 0; number < count; ++number) {
            mouse(number == 1 ? QEvent::MouseButtonDblClick : QEvent::MouseButtonPress, point, modifiers);
            if (!moved.isNull())
                mouse(QEvent::MouseMove, point + moved, modifiers);
            mouse(QEvent::MouseButtonRelease, point + moved, modifiers);
        }
    }
    std::vector<qsizetype> copiedButtons() const
    {
        std::vector<qsizetype> tags;
        for (auto const* const button : view.codeButtons()) {
            if (button->copied())
                tags.push_back(button->tag());
        }
        return tags;
    }

    ManualExecutor executor;
    ReaderScrollView scroll { executor };
    ReaderTextView& view { scroll.textView() };
    QStringList copied;
    bool isClipboardFull = false;
    quint64 now = 1'000'000;
};

struct KeyStep {
    std::string name;
    Qt::Key key;
    Qt::KeyboardModifiers modifiers;
    double from;
    double by;
};

TEST_F(ReaderTextViewTest, Keys_scroll_by_geometry)
{
    view.setRendered(paragraphs(300));
    settle();
    KeyStep const steps[] {
        { "Down", Qt::Key_Down, {}, 1000, 40 },
        { "Up", Qt::Key_Up, {}, 1000, -40 },
        { "Up at the top", Qt::Key_Up, {}, 10, -10 },
        { "Page Down", Qt::Key_PageDown, {}, 1000, 360 },
        { "Page Up", Qt::Key_PageUp, {}, 1000, -360 },
        { "Space", Qt::Key_Space, {}, 1000, 360 },
        { "Shift Space", Qt::Key_Space, Qt::ShiftModifier, 1000, -360 },
        { "Home", Qt::Key_Home, {}, 1000, -1000 },
        { "Down during a peek", Qt::Key_Down, Qt::ControlModifier | Qt::AltModifier, 1000, 40 },
        { "Up during a peek", Qt::Key_Up, Qt::ControlModifier | Qt::AltModifier, 1000, -40 },
    };
    for (auto const& [name, key, modifiers, from, by] : steps) {
        view.peekModifiers = modifiers.testFlag(Qt::AltModifier) ? ModifierFlags::control | ModifierFlags::option
                                                                 : ModifierFlags::none;
        view.setScrollOrigin({ 0, from });
        QTest::keyClick(&view, key, modifiers);
        EXPECT_EQ(view.scrollOrigin(), QPointF(0, from + by)) << name;
        EXPECT_EQ(scroll.verticalScrollBar()->value(), qRound(view.scrollOrigin().y())) << name;
    }
}

TEST_F(ReaderTextViewTest, End_reaches_the_end_of_a_text_not_laid_out_before)
{
    view.setRendered(paragraphs(3000));
    QTest::keyClick(&view, Qt::Key_End);
    EXPECT_NEAR(view.scrollOrigin().y(), bottom(), 1);
    settle();
    EXPECT_NEAR(view.scrollOrigin().y(), bottom(), 1);
}

TEST_F(ReaderTextViewTest, Keys_navigate_dismiss_and_move_the_selection)
{
    std::string steps;
    view.onNavigate = [&](int step) { steps += step < 0 ? '<' : '>'; };
    view.onDismiss = [&] { steps += 'x'; };
    view.setRendered(sheet(u"one two\nthree four\n\nfive e\u0301 six"_s));
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
}

TEST_F(ReaderTextViewTest, A_click_copies_what_lies_under_it_and_nothing_else_does)
{
    struct Case {
        std::string name;
        QPointF point;
        Qt::KeyboardModifiers modifiers;
        QPointF moved;
        QStringList copied;
    };
    view.setRendered(sheet(u"Say $ls -l$ then $mmmm$ and go\n>code in a block"_s));
    auto const inline1 = pointAt(u"ls -l"_s);
    auto const inline2 = pointAt(u"mmmm"_s);
    auto const behindText = pointAt(u"go"_s) + QPointF(120, 0);
    Case const cases[] {
        { "inline code", inline1, {}, {}, { u"ls -l"_s } },
        { "a code block", pointAt(u"code in"_s), {}, {}, { u"code in a block"_s } },
        { "text", pointAt(u"then"_s), {}, {}, {} },
        { "the empty part of a line", behindText, {}, {}, {} },
        { "a hand that trembles", inline2, {}, { 3, 2 }, { u"mmmm"_s } },
        { "a drag of five points", inline2, {}, { 5, 0 }, {} },
        { "Shift", inline1, Qt::ShiftModifier, {}, {} },
        { "Alt", inline1, Qt::AltModifier, {}, {} },
        { "Super", inline1, Qt::MetaModifier, {}, {} },
        { "Control doesn't count", inline1, Qt::ControlModifier, {}, { u"ls -l"_s } },
    };
    for (auto const& each : cases) {
        copied.clear();
        view.setSelection({});
        click(each.point, each.modifiers, each.moved);
        EXPECT_EQ(copied, each.copied) << each.name;
    }

    copied.clear();
    view.setSelection({});
    click(inline2, {}, { view.boundingRect({ positionOf(u"mmmm"_s), 2 }).width(), 0 });
    EXPECT_EQ(selected(), u"mm"_s);
    click(inline1);
    EXPECT_THAT(copied, IsEmpty()) << "a selection was there";
    EXPECT_EQ(selected(), QString());
    click(inline1);
    EXPECT_THAT(copied, ElementsAre(u"ls -l"_s));

    view.peekModifiers = ModifierFlags::command;
    click(inline1, Qt::MetaModifier);
    EXPECT_EQ(copied.size(), 2) << "what the peek holds is no modifier";
    click(inline1, Qt::MetaModifier | Qt::ShiftModifier);
    EXPECT_EQ(copied.size(), 2);
}

TEST_F(ReaderTextViewTest, Double_and_triple_clicks_select_words_and_lines)
{
    view.setRendered(sheet(u"git commit --amend\nrun foo_bar, now\n\nlast line"_s));
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

TEST_F(ReaderTextViewTest, The_copied_look_is_that_of_the_last_copy_and_ends_in_time)
{
    view.setRendered(sheet(u">first\n>second"_s));
    ASSERT_EQ(view.codeButtons().size(), 2U);
    view.codeButtons()[0]->click();
    EXPECT_THAT(copiedButtons(), ElementsAre(0));
    executor.advance(1s);
    view.codeButtons()[1]->click();
    EXPECT_THAT(copied, ElementsAre(u"first"_s, u"second"_s));
    executor.advance(1499ms);
    EXPECT_THAT(copiedButtons(), ElementsAre(1)) << "the first one's end must not end it";
    isClipboardFull = true;
    EXPECT_FALSE(view.copyTarget(0));
    EXPECT_THAT(copiedButtons(), ElementsAre(1)) << "a failed copy changes nothing";
    executor.advance(1ms);
    EXPECT_THAT(copiedButtons(), IsEmpty());

    isClipboardFull = false;
    EXPECT_FALSE(view.copyTarget(2));
    EXPECT_FALSE(view.copyTarget(-1));
    EXPECT_TRUE(view.copyTarget(1));
    view.setLearningModeEnabled(true);
    EXPECT_THAT(copiedButtons(), IsEmpty());
    EXPECT_EQ(executor.pendingTimers(), 0U);
    EXPECT_FALSE(view.codeButtons()[0]->isEnabled());
    EXPECT_FALSE(view.copyTarget(1));

    view.setLearningModeEnabled(false);
    EXPECT_TRUE(view.copyTarget(1));
    view.setRendered(sheet(u">other\n>text"_s));
    EXPECT_THAT(copiedButtons(), IsEmpty());
    EXPECT_EQ(executor.pendingTimers(), 0U);
}

TEST_F(ReaderTextViewTest, A_hundred_thousand_blocks_have_buttons_where_they_show_alone)
{
    view.setRendered(sheet(u">code\n"_s.repeated(100'000)));
    auto const check = [&] {
        auto const& buttons = view.codeButtons();
        ASSERT_FALSE(buttons.empty());
        EXPECT_LT(buttons.size(), 20U);
        EXPECT_LT(view.findChildren<CodeCopyButton*>(Qt::FindDirectChildrenOnly).size(), 60);
        for (auto const* const button : buttons) {
            auto const block = view.blockRectangle(button->tag()).translated(-view.scrollOrigin());
            EXPECT_EQ(button->geometry(), QRect(view.width() - 54, qRound(block.top() + 4), 30, 28));
        }
    };
    check();
    view.setScrollOrigin({ 0, 900'000 });
    check();
    auto const tag = view.codeButtons()[1]->tag();
    view.codeButtons()[1]->click();
    EXPECT_THAT(copiedButtons(), ElementsAre(tag));
    view.setScrollOrigin({ 0, 900'020 });
    EXPECT_THAT(copiedButtons(), ElementsAre(tag)) << "the look stays with its block";
    EXPECT_EQ(view.makeMenu()->actions().size(), 4) << "one list for all targets";
}

TEST_F(ReaderTextViewTest, The_menu_has_an_item_for_each_target_in_order)
{
    view.setRendered(sheet(u"$a && b$ and $%1$\n>code"_s.arg(u"x"_s.repeated(60))));
    auto menu = view.makeMenu();
    QStringList titles;
    for (auto const* const action : menu->actions())
        titles.append(action->isSeparator() ? u"-"_s : action->text());
    EXPECT_THAT(titles,
        ElementsAre(
            u"Copy"_s, u"Select All"_s, u"-"_s, u"Copy a &&&& b"_s, u"Copy "_s + u"x"_s.repeated(40), u"Copy code"_s));
    EXPECT_FALSE(menu->actions()[0]->isEnabled());
    menu->actions()[4]->trigger();
    EXPECT_THAT(copied, ElementsAre(u"x"_s.repeated(60)));
    auto* const stale = menu->actions()[5];
    view.setRendered(sheet(u"$only$"_s));
    stale->trigger();
    EXPECT_EQ(copied.size(), 1);

    view.setLearningModeEnabled(true);
    menu = view.makeMenu();
    ASSERT_EQ(menu->actions().size(), 1);
    EXPECT_EQ(menu->actions()[0]->text(), u"Copying is disabled in Learning Mode"_s);
    EXPECT_FALSE(menu->actions()[0]->isEnabled());
}

TEST_F(ReaderTextViewTest, Find_goes_round_in_both_directions_and_brings_matches_into_sight)
{
    view.setRendered({ [] {
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

TEST_F(ReaderTextViewTest, The_wheel_scrolls_and_the_origin_is_told)
{
    view.setRendered(paragraphs(300));
    settle();
    std::vector<QPointF> told;
    view.onScroll = [&](QPointF origin) { told.push_back(origin); };
    QWheelEvent wheel({ 50, 50 }, view.mapToGlobal(QPointF(50, 50)), {}, { 0, -120 }, Qt::NoButton, Qt::NoModifier,
        Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&view, &wheel);
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
    view.setRendered(sheet(filler.repeated(100) + u">line\n"_s.repeated(100)));
    settle();
    auto const shown = [this] { return view.blockRectangle(0).top() - view.scrollOrigin().y(); };
    view.setScrollOrigin({ 0, view.blockRectangle(0).top() + 8 });
    EXPECT_EQ(shown(), -8);
    for (auto const width : { 700, 420, 500 }) {
        scroll.resize(width, 400);
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
    EXPECT_EQ(scroll.horizontalScrollBar()->maximum(), 0);
    setMinimumCodeWidth(1200);
    EXPECT_EQ(scroll.horizontalScrollBar()->maximum(), 1200 + 32 - view.width());
    setMinimumCodeWidth(330);
    EXPECT_EQ(scroll.horizontalScrollBar()->maximum(), 0);
}

TEST_F(ReaderTextViewTest, A_block_spans_the_visible_width_and_stays_there_when_scrolled_sideways)
{
    view.setRendered(sheet(u"before\n>code"_s));
    setMinimumCodeWidth(1200);
    auto const width = view.width() - 32;
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
    view.setRendered(sheet(u"before\n>code"_s));
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
