#include "presentation/SummoningDesk.h"

#include <gmock/gmock.h>

#include <random>

namespace Quillory {
namespace {

using namespace std::chrono_literals;
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
        if (previous == panelWindow)
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
        : m_random(seed)
    {
    }

    void step()
    {
        switch (std::uniform_int_distribution(0, 15)(m_random)) {
        case 0:
            m_step = "toggle shortcut";
            desk.strikeToggle();
            model.presence == Presence::closed ? model.open() : model.close();
            break;
        case 1:
            m_step = "open";
            desk.coordinator->open();
            model.open();
            break;
        case 2:
            m_step = "dismiss";
            desk.coordinator->close();
            model.close();
            break;
        case 3:
        case 4:
            pressPeek();
            break;
        case 5:
            releasePeek();
            break;
        case 6:
            losePeekRelease();
            break;
        case 7:
        case 8:
            holdOption();
            break;
        case 9:
            releaseOption();
            break;
        case 10:
        case 11:
            switchTo();
            break;
        case 12:
            session();
            break;
        case 13:
            closeButton();
            break;
        case 14:
            picker();
            break;
        case 15:
            m_step = "time passes";
            desk.executor.advance(std::chrono::milliseconds(std::uniform_int_distribution(1, 700)(m_random)));
            break;
        }
    }

    std::string lastStep() const { return m_step; }

    SummoningDesk desk;
    Model model;

private:
    void pressPeek()
    {
        if (model.peekKeyHeld)
            return;
        m_step = "peek shortcut down";
        desk.pressPeek();
        model.peekKeyHeld = true;
        model.beginPeek(Presence::keyboardPeek);
    }
    void releasePeek()
    {
        if (!model.peekKeyHeld)
            return;
        m_step = "peek shortcut up";
        desk.releasePeek();
        model.peekKeyHeld = false;
        if (model.presence != Presence::gesturePeek)
            model.endPeek();
    }
    void losePeekRelease()
    {
        if (!model.peekKeyHeld)
            return;
        m_step = "peek keys let go unseen";
        desk.losePeekRelease();
        desk.executor.advance(30ms);
        model.peekKeyHeld = false;
        if (model.presence == Presence::keyboardPeek)
            model.endPeek();
        desk.hotKeys.release(SummoningDesk::peekKey);
        if (model.presence != Presence::gesturePeek)
            model.endPeek();
    }
    void holdOption()
    {
        if (model.optionHeld)
            return;
        m_step = "gesture";
        desk.holdOption();
        model.optionHeld = true;
        model.observing = model.observing && model.permitted;
        // The modifiers of a held peek spoil it.
        model.gestureOn = model.observing && !model.peekKeyHeld;
        if (model.gestureOn)
            model.beginPeek(Presence::gesturePeek);
    }
    void releaseOption()
    {
        if (!model.optionHeld)
            return;
        m_step = "gesture key up";
        desk.releaseOption();
        model.optionHeld = false;
        model.endGesture();
    }
    void switchTo()
    {
        std::uint64_t const windows[] { editor.window, secondEditorWindow.window, browser.window, panelWindow };
        auto const window = windows[std::uniform_int_distribution(0, 3)(m_random)];
        // A panel that is away can't be switched to.
        if (window == panelWindow && model.presence == Presence::closed)
            return;
        m_step = "window " + std::to_string(window) + " to the front";
        if (std::uniform_int_distribution(0, 9)(m_random) == 0)
            model.permitted = desk.permission.canListen = !model.permitted;
        desk.workspace.bringToFront(window);
        model.activate(window);
    }
    void session()
    {
        switch (std::uniform_int_distribution(0, 2)(m_random)) {
        case 0:
            m_step = "sleep";
            desk.session.sleep();
            model.endPeek();
            break;
        case 1:
            m_step = "session resigns";
            desk.session.resign();
            model.endPeek();
            break;
        default:
            m_step = "wake";
            desk.session.wake();
            model.endGesture();
            model.refreshGesture();
        }
    }
    void closeButton()
    {
        if (model.presence == Presence::closed || model.picker)
            return;
        m_step = "close button";
        desk.coordinator->windowWillClose();
        desk.panel.goAway();
        model.leave();
    }
    void picker()
    {
        m_step = model.picker ? "picker answered" : "picker";
        if (model.picker) {
            desk.services.openPanels.dismiss();
            model.picker = false;
            return;
        }
        if (model.presence == Presence::closed)
            return;
        model.gestureOn = false;
        model.presence = Presence::resident;
        model.picker = true;
        model.front = panelWindow;
        desk.presentPicker();
    }

    std::mt19937 m_random;
    std::string m_step;
};

TEST(CoordinatorAtRandom, It_follows_the_rules_through_every_sequence_of_events)
{
    for (unsigned seed = 1; seed <= 60; ++seed) {
        CoordinatorWalk walk(seed);
        for (int step = 0; step < 500; ++step) {
            walk.step();
            SCOPED_TRACE("seed " + std::to_string(seed) + ", step " + std::to_string(step) + ": " + walk.lastStep());
            ASSERT_EQ(walk.desk.presence(), walk.model.presence);
            ASSERT_THAT(walk.desk.contradictions(), testing::ElementsAre());
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
        EXPECT_THAT(walk.desk.hotKeys.registered(), testing::IsEmpty());
    }
}

}
}
