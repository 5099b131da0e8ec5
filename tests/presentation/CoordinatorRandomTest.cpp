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
    bool permitted = true, observing = true;
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
        front = panelWindow;
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
        front = panelWindow;
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
        observing = permitted;
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

class CoordinatorWalk {
public:
    explicit CoordinatorWalk(unsigned seed)
        : m_dice(seed)
    {
    }

    // Names what has happened; empty when the step can't be taken now.
    std::string step()
    {
        using Self = CoordinatorWalk;
        return (this
                    ->*m_dice.anyOf(std::array { &Self::toggle, &Self::open, &Self::dismiss, &Self::pressPeek,
                        &Self::pressPeek, &Self::releasePeek, &Self::losePeekRelease, &Self::holdOption,
                        &Self::holdOption, &Self::releaseOption, &Self::switchTo, &Self::switchTo, &Self::changeSession,
                        &Self::closeByButton, &Self::picker, &Self::passTime }))();
    }

    SummoningDesk desk;
    Model model;

private:
    std::string toggle()
    {
        desk.strikeToggle();
        model.presence == Presence::closed ? model.open() : model.close();
        return "toggle shortcut";
    }
    std::string open()
    {
        desk.coordinator->open();
        model.open();
        return "open";
    }
    std::string dismiss()
    {
        desk.coordinator->close();
        model.close();
        return "dismiss";
    }
    std::string pressPeek()
    {
        if (std::exchange(model.peekKeyHeld, true))
            return {};
        desk.pressPeek();
        model.beginPeek(Presence::keyboardPeek);
        return "peek shortcut down";
    }
    std::string releasePeek()
    {
        if (!std::exchange(model.peekKeyHeld, false))
            return {};
        desk.releasePeek();
        if (model.presence != Presence::gesturePeek)
            model.endPeek();
        return "peek shortcut up";
    }
    std::string losePeekRelease()
    {
        if (!std::exchange(model.peekKeyHeld, false))
            return {};
        desk.losePeekRelease();
        desk.executor.advance(30ms);
        if (model.presence == Presence::keyboardPeek)
            model.endPeek();
        desk.hotKeys.release(SummoningDesk::peekKey);
        if (model.presence != Presence::gesturePeek)
            model.endPeek();
        return "peek keys let go unseen";
    }
    std::string holdOption()
    {
        if (std::exchange(model.optionHeld, true))
            return {};
        desk.holdOption();
        model.observing = model.observing && model.permitted;
        // The modifiers of a held peek spoil it.
        model.gestureOn = model.observing && !model.peekKeyHeld;
        if (model.gestureOn)
            model.beginPeek(Presence::gesturePeek);
        return "gesture";
    }
    std::string releaseOption()
    {
        if (!std::exchange(model.optionHeld, false))
            return {};
        desk.releaseOption();
        model.endGesture();
        return "gesture key up";
    }
    std::string switchTo()
    {
        auto const window = m_dice.anyOf(
            std::array { editor.window, secondEditorWindow.window, browser.window, panelWindow });
        if (window == panelWindow && model.presence == Presence::closed)
            return {};
        if (m_dice.oneIn(10))
            model.permitted = desk.permission.canListen = !model.permitted;
        desk.workspace.bringToFront(window);
        model.activate(window);
        return "window " + std::to_string(window) + " to the front";
    }
    std::string changeSession()
    {
        if (m_dice.oneIn(3)) {
            desk.session.wake();
            model.endGesture();
            model.refreshGesture();
            return "wake";
        }
        m_dice.oneIn(2) ? desk.session.sleep() : desk.session.resign();
        model.endPeek();
        return "sleep or session resigns";
    }
    std::string closeByButton()
    {
        if (model.presence == Presence::closed)
            return {};
        desk.coordinator->windowWillClose();
        desk.panel.goAway();
        model.leave();
        return "close button";
    }
    std::string picker()
    {
        if (std::exchange(model.picker, !model.picker)) {
            desk.services.openPanels.dismiss();
            return "picker answered";
        }
        model.gestureOn = false;
        if (model.presence != Presence::closed)
            model.presence = Presence::resident;
        model.front = panelWindow;
        desk.presentPicker();
        return "picker";
    }
    std::string passTime()
    {
        desk.executor.advance(std::chrono::milliseconds(1 + m_dice.below(700)));
        return "time passes";
    }

    Dice m_dice;
};

TEST(CoordinatorAtRandom, It_follows_the_rules_through_every_sequence_of_events)
{
    for (unsigned seed = 1; seed <= 60; ++seed) {
        CoordinatorWalk walk(seed);
        for (int step = 0; step < 500; ++step) {
            auto const what = walk.step();
            SCOPED_TRACE("seed " + std::to_string(seed) + ", step " + std::to_string(step) + ": " + what);
            ASSERT_EQ(walk.desk.presence(), walk.model.presence);
            ASSERT_THAT(walk.desk.contradictions(), ElementsAre());
            ASSERT_EQ(walk.desk.workspace.frontmostApplication()->window, walk.model.front);
            std::vector<std::uint64_t> activated;
            for (auto const& application : walk.desk.workspace.activations)
                activated.push_back(application.window);
            ASSERT_EQ(activated, walk.model.activated);
        }
        walk.desk.library.shutdown();
        walk.desk.coordinator.reset();
        walk.desk.shortcuts.reset();
        EXPECT_EQ(walk.desk.executor.pendingTimers(), 0U);
        EXPECT_EQ(walk.desk.session.observers(), 0);
        EXPECT_EQ(walk.desk.workspace.observers(), 0U);
        EXPECT_EQ(walk.desk.events.observations(), 0U);
        EXPECT_THAT(walk.desk.hotKeys.registered(), IsEmpty());
    }
}

}
}
