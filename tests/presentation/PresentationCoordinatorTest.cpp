#include "presentation/SummoningDesk.h"

#include "presentation/TakenShortcuts.h"
#include "support/FakeDesktopHotKeys.h"
#include "support/Test.h"

namespace Quillory {
namespace {

using Presence = SummoningDesk::Presence;

using Act = void (*)(SummoningDesk&);

void closePanelByItsButton(SummoningDesk& desk)
{
    desk.coordinator->windowWillClose();
    desk.panel.goAway();
}

TEST(PresentationCoordinator, Things_are_done_in_the_order_that_hands_the_keyboard_over)
{
    SummoningDesk desk;
    desk.panel.takeCalls();
    struct Row {
        char const* event;
        Act act;
        QStringList calls;
    };
    QStringList const leaving { u"dismissTooltips"_s, u"savePanelFrame"_s, u"lower level"_s, u"orderOut"_s };
    Row const rows[] {
        { "opened", [](auto& d) { d.strikeToggle(); }, { u"dismissTooltips"_s, u"lower level"_s, u"show"_s } },
        { "opened again", [](auto& d) { d.coordinator->open(); },
            { u"dismissTooltips"_s, u"savePanelFrame"_s, u"lower level"_s, u"show"_s } },
        { "peeked at while open", [](auto& d) { d.pressPeek(); },
            { u"raise level"_s, u"makeKeyAndOrderFront"_s, u"focusReader"_s } },
        { "let go", [](auto& d) { d.releasePeek(); }, leaving },
        { "peeked at", [](auto& d) { d.pressPeek(); },
            { u"show peek"_s, u"raise level"_s, u"makeKeyAndOrderFront"_s, u"focusReader"_s } },
        { "a picker comes", [](auto& d) { d.presentPicker(); }, { u"lower level"_s, u"dismissTooltips"_s } },
        { "the keys are let go beside it", [](auto& d) { d.releasePeek(); }, {} },
        { "the picker went, moved, closed by its button",
            [](auto& d) {
                d.services.openPanels.dismiss();
                d.coordinator->windowDidMove();
                closePanelByItsButton(d);
            },
            { u"savePanelFrame"_s, u"dismissTooltips"_s, u"savePanelFrame"_s, u"lower level"_s } },
        { "moved while away", [](auto& d) { d.coordinator->windowDidResize(); }, {} },
    };
    for (auto const& [event, act, calls] : rows) {
        SCOPED_TRACE(event);
        act(desk);
        EXPECT_EQ(desk.panel.takeCalls(), calls);
    }
}

TEST(PresentationCoordinator, The_keyboard_goes_nowhere_when_nobody_had_it)
{
    SummoningDesk desk;
    desk.workspace.close(secondEditorWindow.window);
    desk.coordinator->open();
    desk.coordinator->close();
    EXPECT_THAT(desk.workspace.activations, IsEmpty());
}

TEST(PresentationCoordinator, A_gesture_under_way_is_abandoned_by_whatever_changes_the_scene)
{
    Act const scenes[] {
        [](auto& d) { d.session.willSleep.tell(); },
        [](auto& d) { d.session.didWake.tell(); },
        [](auto& d) { d.session.resigned.tell(); },
        [](auto& d) { d.coordinator->open(), d.coordinator->close(); },
        [](auto& d) { d.presentPicker(), d.services.openPanels.dismiss(); },
        [](auto& d) { d.pressPeek(), d.releasePeek(); },
    };
    for (auto const& scene : scenes) {
        SCOPED_TRACE(&scene - scenes);
        SummoningDesk desk;
        desk.tapOption();
        desk.pressOption();
        scene(desk);
        desk.executor.advance(400ms);
        EXPECT_EQ(desk.presence(), Presence::closed);
    }
}

TEST(PresentationCoordinator, One_shortcut_for_both_is_the_toggle_and_an_unset_one_peeks_at_nothing)
{
    SummoningDesk desk;
    desk.store(
        u"peekQuillory", { SummoningDesk::toggleKey, Shortcut::carbonModifiersOf(SummoningDesk::toggleModifiers) });
    desk.make();
    desk.pressToggle();
    desk.executor.advance(1s);
    EXPECT_EQ(desk.presence(), Presence::closed);
    desk.hotKeys.release(SummoningDesk::toggleKey);
    EXPECT_EQ(desk.presence(), Presence::resident);
    desk.strikeToggle();
    EXPECT_EQ(desk.presence(), Presence::closed);

    desk.services.defaults.setValue(u"KeyboardShortcuts_peekQuillory"_s, false);
    desk.make();
    desk.pressPeek();
    EXPECT_EQ(desk.presence(), Presence::closed);
}

TEST(PresentationCoordinator, Each_summons_and_each_wake_read_the_folder_again)
{
    SummoningDesk desk;
    desk.services.root.makeFolder("library");
    desk.library.connect(desk.services.root.path("library"));
    desk.executor.settle();
    Act const summonses[] { [](auto& d) { d.coordinator->open(); }, [](auto& d) { d.session.didWake.tell(); },
        [](auto& d) { d.pressPeek(); } };
    for (auto const& act : summonses) {
        bool isRead = false;
        desk.services.files.before = [&](auto step, auto const&) {
            isRead = isRead || step == FaultyFileSystem::Step::names;
            return 0;
        };
        act(desk);
        desk.executor.settle();
        EXPECT_TRUE(isRead);
    }
}

TEST(TakenShortcuts, A_key_that_another_program_holds_is_told_until_it_could_be_had_or_was_changed)
{
    SummoningDesk desk;
    using Reason = HotKeys::Refusal::Reason;
    desk.hotKeys.refusals = { { { SummoningDesk::toggleKey, SummoningDesk::toggleModifiers }, Reason::taken },
        { { SummoningDesk::peekKey, SummoningDesk::peekModifiers }, Reason::unknownKey } };
    desk.make();
    QStringList logged;
    auto& message = desk.library.message;
    desk.library.showMessage(u"first"_s);
    TakenShortcuts told({ desk.shortcuts->shortcuts, desk.library, desk.workspace, desk.shortcuts->notifications,
        [](Shortcut const& shortcut) { return QString::number(shortcut.carbonKeyCode); },
        [&](QString const& sentence) { logged.append(sentence); } });
    told.look();
    EXPECT_THAT(logged, ElementsAre(u"40 is used by another program."_s));
    EXPECT_EQ(message.value(), u"first"_s);
    desk.library.withdrawMessage(u"first"_s);
    desk.coordinator->open();
    EXPECT_EQ(message.value(), u"40 is used by another program."_s);
    desk.library.withdrawMessage(*message.value());
    desk.workspace.bringToFront(browser.window);
    EXPECT_EQ(message.value(), std::nullopt) << "it was read and dismissed";

    desk.hotKeys.refusals.push_back({ { 0, SummoningDesk::toggleModifiers }, Reason::taken });
    desk.shortcuts->shortcuts.setShortcut(
        Shortcut { 0, Shortcut::carbonModifiersOf(SummoningDesk::toggleModifiers) }, ShortcutName::toggleQuillory());
    EXPECT_EQ(message.value(), u"0 is used by another program."_s);
    desk.hotKeys.refusals.clear();
    desk.workspace.bringToFront(secondEditorWindow.window);
    EXPECT_EQ(message.value(), std::nullopt);
    EXPECT_EQ(desk.hotKeys.registered().size(), 2U);
    EXPECT_EQ(logged.size(), 2);
}

TEST(TakenShortcuts, Keys_that_the_desktop_does_not_bind_are_told_once_and_no_longer_than_that_lasts)
{
    using State = DesktopHotKeys::State;
    SummoningDesk desk;
    desk.make();
    FakeDesktopHotKeys desktop;
    int logged = 0;
    TakenShortcuts const told({ desk.shortcuts->shortcuts, desk.library, desk.workspace, desk.shortcuts->notifications,
        [](Shortcut const&) { return QString(); }, [&](QString const&) { ++logged; }, &desktop });
    for (auto const& [state, isTold, count] : std::initializer_list<std::tuple<State, bool, int>> {
             { State::unavailable, false, 0 }, // the settings say so, which is enough for what never was
             { State::refused, true, 1 }, { State::asking, false, 1 }, { State::bound, false, 1 },
             { State::unavailable, true, 2 }, { State::unavailable, true, 2 }, { State::bound, false, 2 } }) {
        desktop.become(state);
        EXPECT_EQ(desk.library.message.value().has_value(), isTold);
        EXPECT_EQ(logged, count);
    }
}

}
}
