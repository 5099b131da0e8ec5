#include "presentation/SummoningDesk.h"

#include "support/Dice.h"
#include "support/Test.h"

namespace Quillory {
namespace {

using Presence = SummoningDesk::Presence;

// The rules of summoning, told a second time and as plainly as can be: what is up, which keys are held, who is in
// front, and to whom the keyboard is owed.
struct Model {
    Presence presence = Presence::closed;
    bool peekKeyHeld = false, optionHeld = false, gestureOn = false, picker = false;
    bool permitted = true, observing = true, granted = true;
    std::uint64_t front = secondEditorWindow.window;
    std::vector<std::uint64_t> latest { secondEditorWindow.window, editor.window, browser.window };
    std::uint64_t previous = 0;
    std::vector<std::uint64_t> activated;

    bool isPeek() const { return presence == Presence::keyboardPeek || presence == Presence::gesturePeek; }

    void open()
    {
        if (picker)
            return;
        if (presence == Presence::closed)
            previous = front;
        gestureOn = false;
        presence = Presence::resident;
        activate(panelWindow);
    }
    void leave()
    {
        gestureOn = false;
        presence = Presence::closed;
        if (front != panelWindow)
            return;
        activate(latest.front()); // by the window manager
        if (previous == 0 || previous == panelWindow)
            return;
        activated.push_back(previous);
        activate(previous);
    }
    void close()
    {
        if (!picker)
            leave();
    }
    void endPeek()
    {
        bool const wasPeek = isPeek();
        gestureOn = false;
        if (wasPeek)
            close();
    }
    void beginPeek(Presence kind)
    {
        if (isPeek() || picker)
            return;
        previous = front;
        presence = kind;
        activate(panelWindow);
    }
    void activate(std::uint64_t window)
    {
        if (front == window)
            return;
        front = window;
        refreshGesture();
        if (window == panelWindow)
            return;
        std::erase(latest, window);
        latest.insert(latest.begin(), window);
        if (isPeek())
            endPeek();
        if (presence == Presence::resident)
            previous = window;
    }
    // The permission is looked at when the scene changes.
    void refreshGesture()
    {
        observing = granted = permitted;
        if (!observing)
            endGesture();
    }
    void endGesture()
    {
        bool const wasOn = std::exchange(gestureOn, false);
        if (wasOn && presence == Presence::gesturePeek)
            close();
    }
};

using Desk = SummoningDesk;

struct Step {
    char const* what;
    void (*take)(Desk&, Model&, Dice&); // does nothing when it can't be taken now
};

Step const steps[] {
    { "toggle shortcut",
        [](Desk& desk, Model& model, Dice&) {
            desk.strikeToggle();
            model.presence == Presence::closed ? model.open() : model.close();
        } },
    { "toggle shortcut while minimized",
        [](Desk& desk, Model& model, Dice&) {
            if (model.presence == Presence::closed)
                return;
            desk.panel.minimized = true;
            desk.strikeToggle();
            desk.panel.minimized = false;
            model.open();
        } },
    { "open", [](Desk& desk, Model& model, Dice&) { desk.coordinator->open(), model.open(); } },
    { "dismiss", [](Desk& desk, Model& model, Dice&) { desk.coordinator->close(), model.close(); } },
    { "peek shortcut down",
        [](Desk& desk, Model& model, Dice&) {
            if (std::exchange(model.peekKeyHeld, true))
                return;
            desk.pressPeek();
            model.beginPeek(Presence::keyboardPeek);
        } },
    { "peek shortcut up, at times unseen at first",
        [](Desk& desk, Model& model, Dice& dice) {
            if (!std::exchange(model.peekKeyHeld, false))
                return;
            if (dice.oneIn(2)) {
                desk.keys.down.erase(dice.anyOf(std::array { Desk::peekKey, Desk::leftControl }));
                desk.executor.advance(30ms);
                if (model.presence == Presence::keyboardPeek)
                    model.endPeek();
            }
            desk.releasePeek();
            if (model.presence != Presence::gesturePeek)
                model.endPeek();
        } },
    { "gesture",
        [](Desk& desk, Model& model, Dice&) {
            if (std::exchange(model.optionHeld, true))
                return;
            desk.holdOption();
            model.observing = model.observing && model.permitted;
            // The modifiers of a held peek spoil it.
            model.gestureOn = model.observing && !model.peekKeyHeld;
            if (model.gestureOn)
                model.beginPeek(Presence::gesturePeek);
        } },
    { "gesture key up, at times unseen",
        [](Desk& desk, Model& model, Dice& dice) {
            if (!std::exchange(model.optionHeld, false))
                return;
            if (dice.oneIn(2)) {
                desk.keys.down.erase(Desk::leftOption);
                desk.executor.advance(30ms);
            }
            desk.releaseOption();
            model.endGesture();
        } },
    { "gesture off and on",
        [](Desk& desk, Model& model, Dice&) {
            desk.library.setModifierGesture(ModifierGesture::off);
            desk.library.setModifierGesture(ModifierGesture::option);
            model.endGesture();
            model.refreshGesture();
        } },
    { "another window to the front, at times with another permission",
        [](Desk& desk, Model& model, Dice& dice) {
            auto const window = dice.anyOf(
                std::array { editor.window, secondEditorWindow.window, browser.window, panelWindow });
            if (window == panelWindow && model.presence == Presence::closed)
                return;
            if (dice.oneIn(10))
                model.permitted = desk.permission.canListen = !model.permitted;
            desk.workspace.bringToFront(window);
            model.activate(window);
        } },
    { "wake",
        [](Desk& desk, Model& model, Dice&) {
            desk.session.didWake.tell();
            model.endGesture();
            model.refreshGesture();
        } },
    { "sleep", [](Desk& desk, Model& model, Dice&) { desk.session.willSleep.tell(), model.endPeek(); } },
    { "session resigns", [](Desk& desk, Model& model, Dice&) { desk.session.resigned.tell(), model.endPeek(); } },
    { "close button",
        [](Desk& desk, Model& model, Dice&) {
            if (model.presence == Presence::closed)
                return;
            desk.coordinator->windowWillClose();
            desk.panel.goAway();
            model.leave();
        } },
    { "picker comes or is answered",
        [](Desk& desk, Model& model, Dice&) {
            if (std::exchange(model.picker, !model.picker))
                return desk.services.openPanels.dismiss();
            model.gestureOn = false;
            if (model.presence != Presence::closed)
                model.presence = Presence::resident;
            model.activate(panelWindow);
            desk.presentPicker();
        } },
    { "time passes, with one more modifier held",
        [](Desk& desk, Model&, Dice& dice) {
            desk.keys.down.insert(Desk::leftShift);
            desk.executor.advance(std::chrono::milliseconds(1 + dice.below(700)));
            desk.keys.down.erase(Desk::leftShift);
        } },
};

TEST(CoordinatorAtRandom, It_follows_the_rules_through_every_sequence_of_events)
{
    for (unsigned seed = 1; seed <= 60; ++seed) {
        Desk desk;
        Model model;
        Dice dice(seed);
        for (int number = 0; number < 500; ++number) {
            auto const& step = dice.anyOf(steps);
            SCOPED_TRACE("seed " + std::to_string(seed) + ", step " + std::to_string(number) + ": " + step.what);
            step.take(desk, model, dice);
            ASSERT_EQ(desk.presence(), model.presence);
            ASSERT_EQ(desk.coordinator->isPolling(), model.isPeek());
            ASSERT_EQ(desk.library.peekModifiers.value() != ModifierFlags::none, model.isPeek());
            ASSERT_EQ(desk.panel.presence == PanelPresence::peek, model.isPeek());
            ASSERT_EQ(desk.panel.isUp, model.presence != Presence::closed);
            ASSERT_EQ(desk.library.gesturePermissionGranted.value(), model.granted);
            ASSERT_EQ(desk.workspace.frontmostApplication()->window, model.front);
            ASSERT_TRUE(
                std::ranges::equal(desk.workspace.activations, model.activated, {}, &RunningApplication::window));
        }
        desk.library.shutdown();
        desk.coordinator.reset();
        desk.shortcuts.reset();
        EXPECT_EQ(desk.executor.pendingTimers(), 0U);
        EXPECT_TRUE(
            desk.session.willSleep.isEmpty() && desk.session.didWake.isEmpty() && desk.session.resigned.isEmpty());
        EXPECT_EQ(desk.workspace.observers(), 0U);
        EXPECT_EQ(desk.events.observations(), 0U);
        EXPECT_THAT(desk.hotKeys.registered(), IsEmpty());
    }
}

}
}
