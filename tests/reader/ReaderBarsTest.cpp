#include "presentation/hover_help/HoverHelpTrackingView.h"
#include "reader/BannerLabel.h"
#include "reader/BarButton.h"
#include "reader/Contrast.h"
#include "reader/EmptyState.h"
#include "reader/FindBar.h"
#include "reader/MessageBar.h"
#include "reader/ReaderCommand.h"
#include "reader/ReaderViewFixture.h"
#include "reader/ReaderWindowState.h"
#include "reader/SheetOverlay.h"
#include "reader/TextSizePopover.h"
#include "reader/WindowColors.h"
#include "rendering/Headings.h"

#include <QAccessible>
#include <QCheckBox>
#include <QLineEdit>
#include <QSlider>
#include <QWheelEvent>

namespace Quillory {
namespace {

TEST(ReaderCommandTest, Command_keys_answer_to_Super_and_to_Ctrl_alone)
{
    using enum ReaderCommand;
    constexpr auto both = ModifierFlags::command | ModifierFlags::control;
    for (auto const& [key, command] :
        { std::pair(Qt::Key_K, searchLibrary), { Qt::Key_F, find }, { Qt::Key_R, refresh }, { Qt::Key_Q, quit },
            { Qt::Key_Equal, largerText }, { Qt::Key_Minus, smallerText }, { Qt::Key_0, usualText } }) {
        for (auto const modifier : { ModifierFlags::command, ModifierFlags::control })
            EXPECT_EQ(readerCommandOf(key, modifier), command);
        for (auto const modifiers : { ModifierFlags::none, both, ModifierFlags::control | ModifierFlags::option })
            EXPECT_EQ(readerCommandOf(key, modifiers), std::nullopt);
    }
    EXPECT_EQ(readerCommandOf(Qt::Key_Plus, ModifierFlags::control | ModifierFlags::shift), largerText);
    EXPECT_EQ(readerCommandOf(Qt::Key_F, ModifierFlags::control | ModifierFlags::shift), std::nullopt);
    EXPECT_EQ(readerCommandOf(Qt::Key_Escape, ModifierFlags::none), dismiss);
}

TEST(WindowColorsTest, What_is_read_and_what_is_seen_stands_out_from_both_grounds)
{
    for (auto const& [text, base, highlight] : { std::tuple(Qt::black, Qt::white, Qt::darkBlue),
             { Qt::white, Qt::black, Qt::blue }, { Qt::black, Qt::white, Qt::yellow } }) {
        QPalette palette;
        palette.setColor(QPalette::Text, text);
        palette.setColor(QPalette::Base, base);
        palette.setColor(QPalette::Highlight, highlight);
        auto const colors = WindowColors::fromPalette(palette);
        for (auto const& ground : { colors.chrome, colors.surface }) {
            for (auto const& read : { colors.label, colors.secondary, colors.warning })
                EXPECT_GE(contrast(read, ground), 4.5) << read.name().toStdString();
            for (auto const& seen : { colors.focus, colors.outline })
                EXPECT_GE(contrast(seen, ground), 3) << seen.name().toStdString();
        }
        EXPECT_GE(contrast(colors.accentText, colors.accent), 4.5);
    }
}

class ReaderBarsTest : public ReaderViewTest {
protected:
    ReaderBarsTest() { view.activateWindow(); }

    void settle() { services.executor.settle(); }
    BarButton& button(QString const& name) const
    {
        for (auto* const each : view.findChildren<BarButton*>()) {
            if (each->accessibleName() == name && each->isVisible())
                return *each;
        }
        ADD_FAILURE() << "there is no button " << name.toStdString();
        return *view.findChild<BarButton*>();
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        ASSERT_NE(view.focusWidget(), nullptr);
        QTest::keyClick(view.focusWidget(), key, modifiers);
        settle();
    }
    bool says(QString const& words) const
    {
        return std::ranges::any_of(view.findChildren<QLabel*>(),
            [&](auto const* each) { return each->isVisible() && each->text().contains(words); });
    }
    QLineEdit& findField() const { return *view.findChild<FindBar*>()->findChild<QLineEdit*>(); }
};

TEST_F(ReaderBarsTest, The_bars_say_what_the_selected_sheet_has)
{
    QByteArray sections;
    for (int number = 0; number < 5; ++number)
        sections += (number ? "," : "")
            + QByteArray(R"({"id":"%","title":"S","icon":"%.png","entries":[]})")
                  .replace('%', QByteArray::number(number));
    write("a.md", "# First\n");
    write(
        "keys.quillory.json", R"({"schemaVersion":1,"title":"Keys","icon":"none.png","sections":[)" + sections + "]}");
    connect();
    EXPECT_TRUE(says(u"Local Markdown · viewing only"_s));
    EXPECT_FALSE(button(u"Previous sheet"_s).isEnabled());
    button(u"Next sheet"_s).click();
    settle();
    EXPECT_TRUE(says(u"Quillory JSON · format checked"_s));
    EXPECT_FALSE(button(u"Next sheet"_s).isEnabled());
    auto const lines = label("iconWarnings").text().split(u'\n');
    EXPECT_THAT(lines, SizeIs(3));
    EXPECT_EQ(lines.last(), u"%1 more icon warnings."_s.arg(sheet().iconWarnings.size() - 2));

    button(u"Pin sheet"_s).click();
    settle();
    EXPECT_THAT(store.pinnedIDs.value(), ElementsAre(u"keys.quillory.json"_s));
    EXPECT_EQ(button(u"Unpin sheet"_s).accessibleDescription(), u"Remove this sheet’s menu-bar shortcut"_s);
    button(u"Learning Mode"_s).click();
    settle();
    EXPECT_TRUE(store.learningModeEnabled && says(u"Copying is disabled—"_s));
    services.root.remove("sheets/a.md");
    store.refresh();
    settle();
    EXPECT_FALSE(button(u"Next sheet"_s).isEnabled() || button(u"Previous sheet"_s).isEnabled()) << "the only one";
}

TEST_F(ReaderBarsTest, Banners_are_announced_once_and_stand_beside_a_way_to_mend_what_they_tell)
{
    auto const sheetOf = [](char const* title) {
        return R"({"schemaVersion":1,"sections":[{"id":"a","title":"A","entries":[]}],"title":)"_ba + title + '}';
    };
    write("keys.quillory.json", sheetOf("\"Keys\""));
    connect();
    EXPECT_THAT(services.announcements.announced, IsEmpty()) << "nothing of it is news";
    save("keys.quillory.json", sheetOf("3"));
    store.refresh();
    settle();
    EXPECT_EQ(services.announcements.announced.at(0).first, *sheet().error + u" Showing the last readable version."_s);
    button(u"Open in default editor"_s).click();
    EXPECT_THAT(services.fileOpener.calls, SizeIs(1));

    view.hide();
    services.root.rename("sheets", "away");
    store.refresh();
    settle();
    EXPECT_THAT(services.announcements.announced, SizeIs(1)) << "nobody sees it";
    view.show();
    EXPECT_THAT(services.announcements.announced, SizeIs(2));
    services.openPanels.showWindow(view.winId());
    button(u"Choose folder"_s).click();
    EXPECT_NE(store.filePanel.value(), nullptr);
    services.root.rename("away", "sheets");
    button(u"Refresh"_s).click();
    settle();
    EXPECT_EQ(store.message.value(), std::nullopt);
    store.message.assignAs<MessageBar>(u"Another"_s);
    settle();
    EXPECT_THAT(services.announcements.announced, SizeIs(3));
}

TEST(BannerLabelTest, A_tail_that_does_not_fit_gets_a_line_of_its_own)
{
    FakeAnnouncements announcements;
    BannerLabel both(announcements, nullptr), alone(announcements, nullptr);
    both.say(u"It is unreadable."_s, u"This is old."_s);
    alone.say(u"It is unreadable."_s);
    auto const width = both.fontMetrics().horizontalAdvance(u"It is unreadable. This is"_s);
    auto const line = both.fontMetrics().lineSpacing();
    both.resize(width, 2 * line);
    alone.resize(width, line);
    EXPECT_EQ(both.heightForWidth(width), 2 * line);
    EXPECT_EQ(both.heightForWidth(10 * width), line);
    auto const drawn = both.grab().toImage();
    EXPECT_EQ(drawn.copy(0, 0, width, line), alone.grab().toImage());
    both.resize(width, line);
    (void)both.grab();
    EXPECT_FALSE(HoverHelpTrackingView::of(both).text().isEmpty()) << "what is cut is told whole";
    EXPECT_TRUE(HoverHelpTrackingView::of(alone).text().isEmpty());
}

TEST_F(ReaderBarsTest, Find_opens_searches_and_closes_by_keys_and_buttons)
{
    write("a.md", "alpha beta " + QByteArray("\n\nline").repeated(200) + "\n\nbeta");
    connect();
    text.setFocus();
    press(Qt::Key_F, Qt::ControlModifier);
    EXPECT_EQ(view.focusWidget(), &findField());
    QTest::keyClicks(&findField(), u"beta"_s);
    settle();
    EXPECT_EQ(selected(), u"beta"_s);
    EXPECT_TRUE(says(u"Match"_s));
    press(Qt::Key_Return);
    auto const match = text.boundingRect(text.selection().range());
    auto const place = text.mapTo(&view, (match.center() - text.scrollOrigin()).toPoint());
    EXPECT_EQ(view.childAt(place), &text) << "it is not covered";
    EXPECT_GT(text.scrollOrigin().y(), 0);
    button(u"Next match"_s).click();
    settle();
    EXPECT_EQ(text.scrollOrigin().y(), 0) << "round the end";

    press(Qt::Key_Home);
    press(Qt::Key_K, Qt::ControlModifier);
    press(Qt::Key_F, Qt::MetaModifier);
    EXPECT_EQ(findField().text(), u"beta"_s) << "command keys write and delete nothing";
    EXPECT_TRUE(store.findVisible && store.librarySearchVisible);
    view.resize(440, 360);
    store.requestFind(LibraryStore::FindDirection::forwards);
    settle();
    auto const* const status = view.findChild<FindBar*>()->findChild<QLabel*>();
    EXPECT_EQ(status->text(), u"Match"_s);
    EXPECT_GE(status->width(), status->sizeHint().width()) << "nothing is cut in the smallest window";
    EXPECT_GE(findField().width(), 90);
    view.findChild<FindBar*>()->findChildren<BarButton*>().last()->click();
    settle();
    EXPECT_EQ(store.findQuery.value(), QString());
    EXPECT_EQ(view.focusWidget(), &text);
    EXPECT_FALSE(findField().isVisible());
}

TEST_F(ReaderBarsTest, The_text_size_is_set_by_keys_the_wheel_and_the_popover_within_its_range)
{
    write("a.md", "text");
    connect();
    text.setFocus();
    auto const turn = [&](int steps) {
        QWheelEvent wheel({ 50, 50 }, text.mapToGlobal(QPointF(50, 50)), {}, { 0, 120 * steps }, Qt::NoButton,
            Qt::ControlModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&text, &wheel);
    };
    press(Qt::Key_Plus, Qt::ControlModifier);
    EXPECT_EQ(store.textSize, 17);
    turn(-3);
    EXPECT_EQ(store.textSize, 14);
    turn(-9);
    EXPECT_EQ(store.textSize, Preferences::minimumTextSize);
    store.peekModifiers.assignAs<PresentationCoordinator>(ModifierFlags::control);
    settle();
    turn(1);
    EXPECT_EQ(store.textSize, Preferences::minimumTextSize) << "what a peek holds is no modifier";
    store.peekModifiers.assignAs<PresentationCoordinator>(ModifierFlags::none);
    settle();
    press(Qt::Key_0, Qt::ControlModifier);
    EXPECT_EQ(store.textSize, 16);
    auto* const spoken = QAccessible::queryAccessibleInterface(&button(u"Reader text size"_s));
    EXPECT_EQ(spoken->text(QAccessible::Value), u"16 points"_s);
    EXPECT_EQ(spoken->valueInterface()->currentValue(), 16);

    button(u"Reader text size"_s).click();
    auto& popover = *view.findChild<TextSizePopover*>();
    EXPECT_TRUE(popover.isVisible());
    EXPECT_EQ(view.focusWidget(), popover.findChild<QSlider*>());
    press(Qt::Key_Right);
    EXPECT_EQ(store.textSize, 17);
    EXPECT_TRUE(says(u"17 pt"_s));
    press(Qt::Key_Escape);
    EXPECT_FALSE(popover.isVisible());
    EXPECT_EQ(dismissals, 0);
    EXPECT_EQ(view.focusWidget(), &text);
    button(u"Reader text size"_s).click();
    QTest::mouseClick(&text, Qt::LeftButton, {}, { 5, 5 });
    EXPECT_FALSE(popover.isVisible());
}

TEST_F(ReaderBarsTest, Starters_are_chosen_with_the_keyboard_inside_until_Escape)
{
    connect();
    view.takeKeyboard();
    EXPECT_EQ(view.focusWidget(), &button(u"Choose folder"_s));
    button(u"Install starter sheets"_s).click();
    auto rows = view.findChildren<QCheckBox*>();
    ASSERT_EQ(rows.size(), 11);
    EXPECT_EQ(rows.at(9)->text(), u"IntelliJ IDEA"_s);
    EXPECT_EQ(rows.at(6)->accessibleDescription(), u"Include the Brave.quillory starter sheet when installing"_s);
    for (int step = 0; step < 30; ++step) {
        press(Qt::Key_Tab);
        ASSERT_TRUE(view.findChild<SheetOverlay*>()->isAncestorOf(view.focusWidget()));
    }
    press(Qt::Key_F, Qt::ControlModifier);
    EXPECT_FALSE(store.findVisible);
    for (auto* const row : rows)
        row->setChecked(false);
    EXPECT_FALSE(button(u"Install selected"_s).isEnabled());
    press(Qt::Key_Escape);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(view.findChild<SheetOverlay*>(), nullptr);
    EXPECT_EQ(dismissals, 0);
    EXPECT_EQ(view.focusWidget(), &button(u"Choose folder"_s));

    button(u"Install starter sheets"_s).click();
    EXPECT_EQ(std::ranges::count_if(view.findChildren<QCheckBox*>(), &QCheckBox::isChecked), 6);
    press(Qt::Key_Return);
    EXPECT_TRUE(store.message.value().has_value());
}

TEST_F(ReaderBarsTest, Tab_goes_from_the_text_through_its_buttons_to_the_bars_as_they_stand)
{
    write("a.md", "# A\n\n```\none\n```\n\n```\ntwo\n```\n");
    write("b.md", "b");
    connect();
    store.message.assignAs<MessageBar>(u"message"_s);
    settle();
    text.setFocus();
    QStringList names;
    for (int step = 0; step < 12; ++step) {
        press(Qt::Key_Tab);
        names.append(view.focusWidget()->accessibleName().trimmed());
    }
    QStringList const expected { u"Copy one"_s, u"Copy two"_s, u"Reader text size"_s, u"Learning Mode"_s,
        u"Pin sheet"_s, u"Close"_s, u"Find in sheet"_s, u"Dismiss message"_s, u"Next sheet"_s, u"Reader actions"_s };
    EXPECT_EQ(names.first(10), expected) << names.join(u", ").toStdString();
    text.setFocus();
    press(Qt::Key_Backtab);
    EXPECT_FALSE(text.hasFocus());
}

TEST_F(ReaderBarsTest, Control_and_an_arrow_go_from_heading_to_heading)
{
    auto const lines = QByteArray("line\n\n").repeated(60);
    write("a.md", "start\n\n" + lines + "## One\n" + lines + "## Two\n" + lines);
    connect();
    text.setFocus();
    for (auto const& [key, expected] : { std::pair(Qt::Key_Down, u"One"_s), { Qt::Key_Down, u"Two"_s },
             { Qt::Key_Down, u"Two"_s }, { Qt::Key_Up, u"One"_s }, { Qt::Key_Up, u"sta"_s } }) {
        press(key, Qt::ControlModifier);
        auto const heading = string().indexOf(expected);
        EXPECT_NEAR(text.boundingRect({ heading, 1 }).top() - text.scrollOrigin().y(), 12, 8) << expected.toStdString();
    }
}

}
}
