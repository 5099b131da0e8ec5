#include "presentation/hover_help/HoverHelp.h"
#include "presentation/hover_help/HoverHelpHost.h"
#include "presentation/hover_help/HoverHelpTrackingView.h"
#include "presentation/hover_help/HoverTooltipPanel.h"
#include "presentation/hover_help/HoverTooltipPlace.h"
#include "presentation/hover_help/MenuHelp.h"

#include "support/ManualExecutor.h"
#include "support/Test.h"

#include <QApplication>
#include <QMenu>
#include <QPushButton>

namespace Quillory {
namespace {

using namespace std::chrono_literals;

TEST(HoverTooltipPlaceTest, Help_is_below_its_control_or_above_and_within_the_screen)
{
    QRect const screen(0, 30, 1000, 700), right(1000, 0, 500, 500);
    struct Case {
        char const* name;
        QRect anchor, visible;
        QSize size;
        QPoint origin;
    };
    for (auto const& [name, anchor, visible, size, origin] :
        std::initializer_list<Case> { { "centred below", { 400, 100, 40, 20 }, screen, { 100, 50 }, { 370, 126 } },
            { "at the left edge", { 0, 100, 40, 20 }, screen, { 100, 50 }, { 8, 126 } },
            { "at the right edge", { 960, 100, 40, 20 }, screen, { 100, 50 }, { 892, 126 } },
            { "just fits below", { 400, 646, 40, 20 }, screen, { 100, 50 }, { 370, 672 } },
            { "above at the bottom", { 400, 647, 40, 20 }, screen, { 100, 50 }, { 370, 591 } },
            { "no room above either", { 400, 40, 40, 660 }, screen, { 100, 50 }, { 370, 38 } },
            { "higher than the screen", { 400, 100, 40, 20 }, screen, { 100, 900 }, { 370, -178 } },
            { "wider than the screen", { 400, 100, 40, 20 }, screen, { 1200, 50 }, { 8, 126 } },
            { "on the other screen", { 1000, 470, 30, 30 }, right, { 100, 50 }, { 1008, 414 } } }) {
        EXPECT_EQ(HoverTooltipPlace::origin(anchor, size, visible), origin) << name;
    }
}

TEST(HoverTooltipPlaceTest, Help_of_an_item_is_level_with_it_on_the_right_or_on_the_left_and_within_the_screen)
{
    QRect const screen(0, 30, 1000, 700);
    for (auto const& [item, origin] :
        { std::pair(QRect(100, 200, 300, 20), QPoint(406, 200)), { { 590, 200, 300, 20 }, { 484, 200 } },
            { { 100, 715, 300, 20 }, { 406, 672 } }, { { 0, 0, 1000, 20 }, { 8, 38 } } })
        EXPECT_EQ(HoverTooltipPlace::besideOrigin(item, { 100, 50 }, screen), origin);
}

class HoverHelpTest : public Test {
protected:
    HoverHelpTest()
    {
        new HoverHelpHost(window, executor, notifications);
        hoverHelp(control, u"Help"_s);
        hoverHelp(other, u"Other help"_s);
        window.resize(300, 200);
        window.show();
    }
    static void point(QEvent::Type type, QWidget& at)
    {
        QEvent event(type);
        QCoreApplication::sendEvent(&at, &event);
    }
    void enter(QWidget& at) { point(QEvent::Enter, at); }
    void leave(QWidget& at) { point(QEvent::Leave, at); }
    void rest() { executor.advance(HoverHelpTrackingView::delay); }
    QStringList shown() const
    {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QStringList texts;
        for (auto const* const panel : window.findChildren<HoverTooltipPanel*>())
            texts.append(panel->isVisible() ? panel->text() : u"(hidden)"_s);
        return texts;
    }

    ManualExecutor executor;
    NotificationCenter notifications;
    QWidget window;
    QPushButton control { &window };
    QPushButton other { &window };
};

TEST_F(HoverHelpTest, It_shows_after_a_rest_and_goes_with_the_pointer_the_control_the_window_and_menus)
{
    auto const menu = [this](QString const& name) { notifications.post({ name, {} }); };
    struct Case {
        char const* name;
        std::function<void()> happens, undo;
    };
    for (auto const& [name, happens, undo] : std::initializer_list<Case> { { "leaves", [&] { leave(control); }, [] {} },
             { "control hides", [&] { control.hide(); }, [&] { control.show(); } },
             { "window hides", [&] { window.hide(); }, [&] { window.show(); } },
             { "window closes", [&] { window.close(); }, [&] { window.show(); } },
             { "menu opens", [&] { menu(NotificationCenter::menuDidBeginTracking()); },
                 [&] { menu(NotificationCenter::menuDidEndTracking()); } },
             { "no text", [&] { hoverHelp(control, {}); },
                 [&] {
                     hoverHelp(control, u"Help"_s);
                     leave(control);
                 } } }) {
        SCOPED_TRACE(name);
        enter(control);
        executor.advance(HoverHelpTrackingView::delay - 1ms);
        EXPECT_THAT(shown(), IsEmpty());
        executor.advance(1ms);
        EXPECT_THAT(shown(), ElementsAre(u"Help"_s));
        happens();
        EXPECT_THAT(shown(), IsEmpty());
        undo();
        rest();
        EXPECT_THAT(shown(), IsEmpty()) << "the pointer has to enter again";
        enter(control);
        happens();
        undo();
        rest();
        EXPECT_THAT(shown(), IsEmpty()) << "while it waited";
    }

    menu(NotificationCenter::menuDidBeginTracking());
    enter(control);
    menu(NotificationCenter::menuDidEndTracking());
    rest();
    EXPECT_THAT(shown(), IsEmpty()) << "entered under a menu";
}

TEST_F(HoverHelpTest, An_item_of_an_open_menu_shows_its_help_beside_the_menu_until_another_one_is_reached)
{
    QMenu menu(&window);
    for (auto const& help : { u"First"_s, QString(), u"Third"_s })
        menu.addAction(u"Item"_s)->setStatusTip(help);
    MenuHelp::show(menu);
    notifications.post({ NotificationCenter::menuDidBeginTracking(), {} });
    menu.popup(window.mapToGlobal(QPoint(20, 20)));
    auto const select = [&](int item) {
        menu.setActiveAction(menu.actions().at(item));
        rest();
    };
    select(0);
    EXPECT_THAT(shown(), ElementsAre(u"First"_s));
    EXPECT_FALSE(menu.geometry().intersects(menu.findChild<HoverTooltipPanel*>()->geometry()));
    select(1);
    EXPECT_THAT(shown(), IsEmpty());
    select(2);
    EXPECT_THAT(shown(), ElementsAre(u"Third"_s));
    menu.close();
    EXPECT_THAT(shown(), IsEmpty());
}

TEST_F(HoverHelpTest, A_changed_text_shows_at_once_and_only_one_control_shows_help)
{
    control.setEnabled(false);
    enter(control);
    rest();
    hoverHelp(control, u"Changed"_s);
    EXPECT_THAT(shown(), ElementsAre(u"Changed"_s)) << "also of a control that is disabled";
    EXPECT_EQ(control.accessibleDescription(), u"Changed"_s);
    enter(other); // from a control to one that lies in it, which leaves none
    rest();
    EXPECT_THAT(shown(), ElementsAre(u"Other help"_s));
    auto const* const panel = window.findChild<HoverTooltipPanel*>();
    EXPECT_TRUE(panel->testAttribute(Qt::WA_ShowWithoutActivating));
    EXPECT_TRUE(panel->windowFlags() & Qt::WindowTransparentForInput);
    EXPECT_TRUE(panel->windowFlags() & Qt::WindowDoesNotAcceptFocus);
}

}
}
