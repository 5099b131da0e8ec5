#include "presentation/SummoningDesk.h"

#include <gmock/gmock.h>

namespace Quillory {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using testing::ElementsAre;
using Presence = SummoningDesk::Presence;

constexpr auto C = Presence::closed;
constexpr auto R = Presence::resident;
constexpr auto K = Presence::keyboardPeek;
constexpr auto G = Presence::gesturePeek;
constexpr Presence everyPresence[] { C, R, K, G };

using Act = void (*)(SummoningDesk&);

void closePanelByItsButton(SummoningDesk& desk)
{
    desk.coordinator->windowWillClose();
    desk.panel.goAway();
}

TEST(PresentationCoordinator, Every_event_leads_from_each_presence_to_the_one_told)
{
    struct Row {
        char const* event;
        Act act;
        Presence after[4]; // from closed, resident, keyboard peek, gesture peek
    };
    Row const rows[] {
        { "toggle shortcut", [](auto& desk) { desk.strikeToggle(); }, { R, C, C, C } },
        { "toggle", [](auto& desk) { desk.coordinator->toggle(); }, { R, C, C, C } },
        { "toggle of a minimized panel", [](auto& desk) { desk.panel.minimized = true, desk.coordinator->toggle(); },
            { R, R, R, R } },
        { "open", [](auto& desk) { desk.coordinator->open(); }, { R, R, R, R } },
        { "dismiss", [](auto& desk) { desk.coordinator->close(); }, { C, C, C, C } },
        { "peek shortcut down", [](auto& desk) { desk.pressPeek(); }, { K, K, K, G } },
        { "peek shortcut up", [](auto& desk) { desk.pressPeek(), desk.releasePeek(); }, { C, C, C, G } },
        { "gesture began",
            [](auto& desk) {
                if (!desk.keys.keyIsDown(SummoningDesk::leftOption))
                    desk.holdOption();
            },
            { G, G, K, G } },
        { "gesture ended", [](auto& desk) { desk.releaseOption(); }, { C, R, K, C } },
        { "keys let go unseen",
            [](auto& desk) {
                desk.keys.down = { SummoningDesk::leftControl, SummoningDesk::leftCommand };
                desk.executor.advance(30ms);
            },
            { C, R, C, C } },
        { "modifiers alone let go unseen",
            [](auto& desk) {
                desk.keys.down = { SummoningDesk::peekKey, SummoningDesk::leftShift };
                desk.executor.advance(30ms);
            },
            { C, R, C, C } },
        { "held on, with more modifiers",
            [](auto& desk) {
                desk.keys.down.insert(SummoningDesk::leftShift);
                desk.executor.advance(10s);
            },
            { C, R, K, G } },
        { "another application activated", [](auto& desk) { desk.workspace.bringToFront(browser.window); },
            { C, R, C, C } },
        { "this application activated", [](auto& desk) { desk.workspace.bringToFront(panelWindow); }, { C, R, K, G } },
        { "will sleep", [](auto& desk) { desk.session.sleep(); }, { C, R, C, C } },
        { "session resigns", [](auto& desk) { desk.session.resign(); }, { C, R, C, C } },
        { "wake", [](auto& desk) { desk.session.wake(); }, { C, R, K, C } },
        { "close button", closePanelByItsButton, { C, C, C, C } },
        { "picker about to show", [](auto& desk) { desk.presentPicker(); }, { C, R, R, R } },
        { "gesture switched off", [](auto& desk) { desk.library.setModifierGesture(ModifierGesture::off); },
            { C, R, K, C } },
    };
    for (auto const& [event, act, after] : rows) {
        for (auto const before : everyPresence) {
            SCOPED_TRACE(std::string(event) + " from presence " + std::to_string(int(before)));
            SummoningDesk desk;
            desk.become(before);
            ASSERT_EQ(desk.presence(), before);
            act(desk);
            EXPECT_EQ(desk.presence(), after[int(before)]);
            EXPECT_THAT(desk.contradictions(), ElementsAre());
        }
        for (auto const before : { C, R }) {
            SCOPED_TRACE(std::string(event) + " beside a picker, from presence " + std::to_string(int(before)));
            SummoningDesk desk;
            desk.become(before);
            desk.presentPicker();
            act(desk);
            EXPECT_EQ(desk.presence(), act == closePanelByItsButton ? C : before);
        }
    }
}

TEST(PresentationCoordinator, Things_are_done_in_the_order_that_hands_the_keyboard_over)
{
    SummoningDesk desk;
    EXPECT_EQ(desk.items.rebuilds, 1);
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

TEST(PresentationCoordinator, The_keyboard_goes_back_where_it_belongs)
{
    auto const toFront = [](SummoningDesk& desk, std::uint64_t window) { desk.workspace.bringToFront(window); };
    struct Row {
        char const* story;
        std::function<void(SummoningDesk&)> act;
        std::vector<RunningApplication> activated;
    };
    Row const rows[] {
        { "the very window of two of one program", [](auto& d) { d.strikeToggle(), d.strikeToggle(); },
            { secondEditorWindow } },
        { "after a peek", [](auto& d) { d.pressPeek(), d.releasePeek(); }, { secondEditorWindow } },
        { "to the last other application",
            [&](auto& d) {
                d.coordinator->open();
                toFront(d, browser.window);
                toFront(d, panelWindow);
                d.coordinator->close();
            },
            { browser } },
        { "not from one that has the front already",
            [&](auto& d) { d.coordinator->open(), toFront(d, browser.window), d.strikeToggle(); }, {} },
        { "not from one that ended a peek",
            [&](auto& d) { d.holdOption(), toFront(d, browser.window), d.releaseOption(); }, {} },
        { "nowhere after a peek over the panel itself",
            [](auto& d) { d.coordinator->open(), d.pressPeek(), d.releasePeek(); }, {} },
        { "nowhere when nobody was there",
            [](auto& d) {
                d.workspace.close(secondEditorWindow.window);
                d.coordinator->open();
                d.coordinator->close();
            },
            {} },
        { "by the close button as well", [](auto& d) { d.coordinator->open(), closePanelByItsButton(d); },
            { secondEditorWindow } },
        { "to where it was when the panel closed and was opened elsewhere",
            [&](auto& d) {
                d.strikeToggle(), d.strikeToggle();
                toFront(d, browser.window);
                d.strikeToggle(), d.strikeToggle();
            },
            { secondEditorWindow, browser } },
    };
    for (auto const& [story, act, activated] : rows) {
        SCOPED_TRACE(story);
        SummoningDesk desk;
        act(desk);
        EXPECT_EQ(desk.workspace.activations, activated);
    }
}

TEST(PresentationCoordinator, A_gesture_under_way_is_abandoned_by_whatever_changes_the_scene)
{
    Act const scenes[] {
        [](auto& d) { d.session.sleep(); },
        [](auto& d) { d.session.wake(); },
        [](auto& d) { d.session.resign(); },
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
        EXPECT_EQ(desk.presence(), C);
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
    EXPECT_EQ(desk.presence(), C);
    desk.hotKeys.release(SummoningDesk::toggleKey);
    EXPECT_EQ(desk.presence(), R);
    desk.strikeToggle();
    EXPECT_EQ(desk.presence(), C);

    desk.services.defaults.setValue(u"KeyboardShortcuts_peekQuillory"_s, false);
    desk.make();
    desk.pressPeek();
    EXPECT_EQ(desk.presence(), C);
}

TEST(PresentationCoordinator, A_permission_given_while_it_runs_is_noticed_at_the_next_change_of_application)
{
    SummoningDesk desk;
    desk.permission.canListen = false;
    desk.workspace.bringToFront(browser.window);
    EXPECT_EQ(desk.events.observations(), 0U);
    EXPECT_FALSE(desk.library.gesturePermissionGranted.value());

    desk.permission.canListen = true;
    desk.workspace.bringToFront(editor.window);
    EXPECT_TRUE(desk.library.gesturePermissionGranted.value());
    desk.holdOption();
    EXPECT_EQ(desk.presence(), G);
}

TEST(PresentationCoordinator, Each_summons_and_each_wake_read_the_folder_again)
{
    SummoningDesk desk;
    desk.services.root.makeFolder("library");
    desk.library.connect(desk.services.root.path("library"));
    desk.executor.settle();
    Act const summonses[] { [](auto& d) { d.coordinator->open(); }, [](auto& d) { d.session.wake(); },
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

}
}
