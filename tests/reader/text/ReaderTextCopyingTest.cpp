#include "reader/text/ReaderTextViewFixture.h"
#include "rendering/MarkdownRenderer.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QListView>
#include <QMenu>
#include <QPointer>

namespace Quillory {
namespace {

TEST_F(ReaderTextViewTest, A_click_copies_what_lies_under_it_and_nothing_else_does)
{
    show(sheet(u"Say $ls -l$ then $mmmm$ and go\n>code in a block"_s));
    auto const inline1 = pointAt(u"ls -l"_s), inline2 = pointAt(u"mmmm"_s);
    struct Case {
        QPointF point;
        Qt::KeyboardModifiers modifiers;
        QPointF moved;
        QStringList copied;
    };
    for (auto const& [point, modifiers, moved, expected] : { Case { inline1, {}, {}, { u"ls -l"_s } },
             { pointAt(u"code in"_s), {}, {}, { u"code in a block"_s } }, { pointAt(u"then"_s), {}, {}, {} },
             { pointAt(u"go"_s) + QPointF(120, 0), {}, {}, {} }, { inline2, {}, { 3, 2 }, { u"mmmm"_s } },
             { inline1, Qt::AltModifier, {}, {} }, { inline1, Qt::ControlModifier, {}, { u"ls -l"_s } } }) {
        copied.clear();
        click(point, modifiers, moved);
        EXPECT_EQ(copied, expected) << point.x() << " with " << modifiers;
    }
    copied.clear();
    click(inline2, {}, { view.boundingRect({ positionOf(u"mmmm"_s), 2 }).width(), 0 });
    EXPECT_EQ(selected(), u"mm"_s);
    click(inline1);
    EXPECT_THAT(copied, IsEmpty()) << "a selection was there";
    EXPECT_EQ(selected(), QString());

    view.peekModifiers = ModifierFlags::command;
    click(inline1, Qt::MetaModifier);
    EXPECT_THAT(copied, ElementsAre(u"ls -l"_s)) << "what the peek holds is no modifier";
    click(inline1, Qt::MetaModifier | Qt::ShiftModifier);
    EXPECT_EQ(copied.size(), 1);

    mouse(QEvent::MouseButtonPress, inline1);
    show(sheet(u"Say $ls -l$ then $mmmm$ and go\n>code in a block"_s));
    mouse(QEvent::MouseButtonRelease, inline1);
    EXPECT_EQ(copied.size(), 1) << "the text is another one";

    view.selectAll();
    click(inline2, {}, { 5, 0 });
    EXPECT_EQ(selected(), QString()) << "what was selected was not taken far enough to be dragged";
}

TEST_F(ReaderTextViewTest, The_copied_look_is_that_of_the_last_copy_and_ends_in_time)
{
    show(sheet(u">first\n>second"_s));
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
    show(sheet(u">other\n>text"_s));
    settle();
    EXPECT_THAT(copiedButtons(), IsEmpty());
    EXPECT_EQ(executor.pendingTimers(), 0U);
}

TEST_F(ReaderTextViewTest, A_hundred_thousand_blocks_have_buttons_where_they_show_alone)
{
    show(sheet(u">code\n"_s.repeated(100'000)));
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
    view.setScrollOrigin(view.scrollOrigin() + QPointF(0, 20));
    EXPECT_THAT(copiedButtons(), ElementsAre(tag)) << "the look stays with its block";
    auto const menu = view.makeMenu();
    EXPECT_EQ(menu->actions().size(), 4) << "one list for all targets";
    copied.clear();
    menu->popup({});
    for (auto const key : { Qt::Key_Down, Qt::Key_Down, Qt::Key_Down, Qt::Key_Up, Qt::Key_Down, Qt::Key_Return })
        QTest::keyClick(menu->windowHandle(), key);
    EXPECT_THAT(copied, ElementsAre(u"code"_s)) << "by keys, into the list, out of it and in again";
    EXPECT_FALSE(menu->isVisible());
    auto const other = view.makeMenu();
    other->popup({});
    auto const* const list = other->findChild<QListView*>();
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualRect(list->model()->index(1, 0)).center());
    EXPECT_EQ(copied.size(), 2) << "by a click";
    EXPECT_FALSE(other->isVisible());
}

TEST_F(ReaderTextViewTest, Selected_text_is_copied_with_tabs_for_cells_without_pictures_and_not_in_Learning_Mode)
{
    AttributedText::Builder builder;
    TextAttributes picture;
    picture.attachment = Attachment { Symbol { u"square.dashed"_s, {} }, 20, 20 };
    builder.append(u"object \uFFFC, picture "_s, {}, {});
    builder.append(u"\uFFFC"_s, picture, {});
    builder.append(u"\u00A0"_s, { .kern = 3, .isGap = true }, {});
    builder.append(u"\nend"_s, {}, {});
    using enum Clipboard::Pasteboard;
    clipboard.setText(general, u"before"_s);
    clipboard.setText(selection, u"before"_s);
    auto const expectCopied = [&](RenderedMarkdown const& rendered, bool isLearning, QString const& expected) {
        show(rendered);
        view.setLearningModeEnabled(isLearning);
        QTest::keyClick(&view, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(&view, Qt::Key_C, Qt::ControlModifier);
        EXPECT_EQ(clipboard.text(general), expected);
        EXPECT_EQ(clipboard.text(selection), expected);
    };
    RenderedMarkdown const withPicture { std::move(builder).build(), {} };
    expectCopied(withPicture, true, u"before"_s);
    expectCopied(withPicture, false, u"object \uFFFC, picture \nend"_s);
    auto const table = MarkdownRenderer::render(u"|a|b|\n|-|-|\n|c||\n|`d`|e|"_s, {}, {}, 16);
    expectCopied(table, false, u"a\tb\nc\t\nd\te\n\n"_s);
}

TEST_F(ReaderTextViewTest, The_menu_has_an_item_for_each_target_in_order)
{
    show(sheet(u"$a && b$ and $%1$\n>code"_s.arg(u"x"_s.repeated(60))));
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
    show(sheet(u"$only$"_s));
    stale->trigger();
    EXPECT_EQ(copied.size(), 1);

    QContextMenuEvent asked(QContextMenuEvent::Mouse, {}, {});
    QCoreApplication::sendEvent(&view, &asked);
    QPointer const popup = QApplication::activePopupWidget();
    ASSERT_TRUE(popup);
    popup->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(popup);

    view.setLearningModeEnabled(true);
    menu = view.makeMenu();
    ASSERT_EQ(menu->actions().size(), 1);
    EXPECT_EQ(menu->actions()[0]->text(), u"Copying is disabled in Learning Mode"_s);
    EXPECT_FALSE(menu->actions()[0]->isEnabled());
}

}
}
