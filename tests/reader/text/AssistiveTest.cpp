#include "reader/text/ReaderTextViewFixture.h"
#include "support/GoldenSheets.h"

#include <QAccessible>

namespace Quillory {
namespace {

class AssistiveTest : public ReaderTextViewTest {
protected:
    using ReaderTextViewTest::show;
    void show(QString const& name)
    {
        show(GoldenSheets::rendered(name, 468));
        settle();
        scalars = view.rendered().text.string().toUcs4();
        spoken = QAccessible::queryAccessibleInterface(&view);
        text = spoken->textInterface();
    }
    QString between(int start, int end) const
    {
        return QString::fromUcs4(reinterpret_cast<char32_t const*>(scalars.data()) + start, end - start);
    }

    void expectSpansToTile(QAccessible::TextBoundaryType type)
    {
        int before = 0, start = 0, end = 0, from = 0, to = 0;
        for (int offset = 0; offset < scalars.size(); before = start, offset = end) {
            auto const span = text->textAtOffset(offset, type, &start, &end);
            ASSERT_EQ(span, between(start, end)) << type;
            ASSERT_EQ(start, offset) << type;
            ASSERT_GT(end, start) << type;
            text->textAfterOffset(offset, type, &from, &to);
            ASSERT_EQ(from, end) << type;
            // A blank belongs to the word before it and is one of its own when it is asked for.
            if (type == QAccessible::WordBoundary)
                continue;
            ASSERT_EQ(text->textAtOffset(end - 1, type, &from, &to), between(start, end)) << type;
            ASSERT_EQ(text->textBeforeOffset(offset, type, &from, &to), between(before, start)) << type;
            ASSERT_EQ(std::pair(from, to), std::pair(before, start));
        }
        EXPECT_EQ(end, scalars.size());
    }

    QAccessibleInterface* spoken = nullptr;
    QAccessibleTextInterface* text = nullptr;
    QList<uint> scalars;
};

TEST_F(AssistiveTest, Offsets_count_scalars_and_spans_of_every_kind_tile_the_text)
{
    QString looks;
    for (auto const& name : GoldenSheets::names()) {
        SCOPED_TRACE(name.toStdString());
        show(name);
        auto const count = static_cast<int>(scalars.size());
        EXPECT_EQ(text->characterCount(), count);
        EXPECT_EQ(text->text(0, -1), view.rendered().text.string());
        for (auto const type : { QAccessible::CharBoundary, QAccessible::WordBoundary, QAccessible::LineBoundary,
                 QAccessible::SentenceBoundary, QAccessible::ParagraphBoundary })
            expectSpansToTile(type);
        int start = 0, end = 0;
        for (int offset = 0; offset < count; offset = end) {
            looks += text->attributes(offset, &start, &end);
            ASSERT_EQ(start, offset);
            ASSERT_GT(end, offset);
        }
        for (int offset = 0; offset < count; ++offset) {
            auto const box = text->characterRect(offset);
            if (box.width() < 3 || !view.rect().contains(box.translated(-view.mapToGlobal(QPoint()))))
                continue;
            text->textAtOffset(text->offsetAtPoint(box.center()), QAccessible::CharBoundary, &start, &end);
            ASSERT_TRUE(offset >= start && offset < end) << offset;
        }
        EXPECT_EQ(text->offsetAtPoint(view.mapToGlobal(QPoint(-3, 5))), -1);
        text->setSelection(0, count / 3, count / 2);
        text->selection(0, &start, &end);
        EXPECT_EQ(std::tuple(start, end, text->selectionCount()), std::tuple(count / 3, count / 2, int(count > 2)));
        EXPECT_EQ(selected(), between(count / 3, count / 2));
        text->removeSelection(0);
        EXPECT_EQ(text->selectionCount(), 0);
        text->setCursorPosition(count);
        EXPECT_EQ(text->cursorPosition(), count);
    }
    for (auto const look : { "font-weight:400;", "font-weight:700;", "font-style:normal;", "font-style:italic;",
             "background-color:rgb(", "text-line-through-style:solid;", "text-underline-style:solid;" })
        EXPECT_TRUE(looks.contains(QLatin1StringView(look))) << look;
}

TEST_F(AssistiveTest, Actions_of_one_name_are_numbered_and_follow_the_text)
{
    auto const label = CopyLook::label(QString(60, u'a'), 50);
    for (auto const& [shown, names] :
        { std::pair(u"$one$"_s, QStringList { u"Copy one"_s }), { u"$two$"_s, { u"Copy two"_s } },
            { u"$%1b$ $%1c$"_s.arg(QString(60, u'a')), { label, label + u" (2)"_s } } }) {
        show(sheet(shown));
        EXPECT_EQ(QAccessible::queryAccessibleInterface(&view)->actionInterface()->actionNames(), names);
    }
}

TEST_F(AssistiveTest, Each_target_has_an_action_of_its_own_and_each_block_a_button)
{
    for (auto const& name : GoldenSheets::names()) {
        SCOPED_TRACE(name.toStdString());
        show(name);
        auto const& targets = view.rendered().copyTargets;
        auto* const actions = spoken->actionInterface();
        auto const names = actions->actionNames();
        ASSERT_EQ(names.size(), std::ssize(targets));
        for (std::size_t index = 0; index < targets.size(); ++index) {
            copied.clear();
            actions->doAction(names[qsizetype(index)]);
            EXPECT_EQ(copied, QStringList { targets[index].text }) << index;
        }
        ASSERT_EQ(spoken->childCount(), std::ssize(view.blockTargets()));
        for (auto const* const shown : view.codeButtons()) {
            auto const at = view.mapToGlobal(shown->geometry().center());
            auto* const button = spoken->childAt(at.x(), at.y());
            ASSERT_TRUE(button);
            EXPECT_EQ(spoken->child(spoken->indexOfChild(button)), button);
            EXPECT_EQ(button->rect(), QRect(view.mapToGlobal(shown->pos()), shown->size()));
            EXPECT_EQ(button->parent(), spoken);
            EXPECT_EQ(button->text(QAccessible::Name), shown->accessibleName());
            EXPECT_FALSE(button->state().offscreen || button->state().disabled);
            copied.clear();
            button->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
            EXPECT_EQ(copied, QStringList { targets[static_cast<std::size_t>(shown->tag())].text });
            EXPECT_EQ(button->text(QAccessible::Help), shown->accessibleDescription());
        }
        view.setLearningModeEnabled(true);
        EXPECT_TRUE(actions->actionNames().isEmpty());
        for (int index = 0; index < spoken->childCount(); ++index) {
            auto& button = *spoken->child(index);
            EXPECT_TRUE(button.actionInterface()->actionNames().isEmpty());
            auto const tag = view.blockTargets()[static_cast<std::size_t>(index)];
            auto const isInSight = std::ranges::any_of(view.codeButtons(),
                [&](auto* shown) { return shown->tag() == tag && shown->geometry().intersects(view.rect()); });
            auto const state = button.state();
            EXPECT_TRUE(state.disabled && !state.invisible && bool(state.offscreen) != isInSight) << index;
        }
        view.setLearningModeEnabled(false);
    }
}

}
}
