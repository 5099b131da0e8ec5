#include "linux/qt/QtLocalKeyEvents.h"
#include "linux/x11/VirtualKeys.h"
#include "support/EventLoop.h"
#include "support/Keys.h"
#include "support/Test.h"
#include "tools/x11/SyntheticKeyboard.h"

#include <QKeyEvent>
#include <QWidget>

namespace Quillory {
namespace {

constexpr std::uint16_t keyK = 40;

std::optional<std::uint16_t> virtualKeyCode(std::uint32_t scanCode)
{
    return VirtualKeys::virtualKeyCode(static_cast<std::uint8_t>(scanCode));
}

class CountingWindow final : public QWidget {
public:
    int presses = 0;

protected:
    void keyPressEvent(QKeyEvent* event) override { presses += event->key() == Qt::Key_K && !event->isAutoRepeat(); }
};

// A window of ours that has the keyboard.
class LocalKeyEventsOnX11 : public Test {
protected:
    static constexpr auto modifiers = ModifierFlags::control | ModifierFlags::shift;

    LocalKeyEventsOnX11()
    {
        window.show();
        window.activateWindow();
        EXPECT_TRUE(loop.runUntil([&] { return window.isActiveWindow(); }));
    }

    // Returns when the window has been told of the last key that was let go, so that none is left for another case.
    void strike()
    {
        int released = 0;
        QtLocalKeyEvents first(virtualKeyCode); // the latest to observe is asked first
        auto const watching = first.observe([&](RawKeyEvent const& event) {
            released += event.kind == RawKeyEvent::Kind::up && event.repeat == RawKeyEvent::Repeat::no;
            return LocalKeyEvents::Answer::passOn;
        });
        play(*keyboard, u"ctrl+shift+K"_s);
        EXPECT_TRUE(loop.runUntil([&] { return released == 3; }));
    }

    EventLoop loop;
    CountingWindow window;
    QtLocalKeyEvents events { virtualKeyCode };
    std::unique_ptr<SyntheticKeyboard> keyboard = SyntheticKeyboard::open().value();
};

TEST_F(LocalKeyEventsOnX11, A_monitor_sees_each_event_first_and_may_keep_it_from_the_window)
{
    using enum RawKeyEvent::Kind;
    std::vector<RawKeyEvent> seen;
    auto answer = LocalKeyEvents::Answer::passOn;
    auto observation = events.observe([&](RawKeyEvent const& event) {
        if (event.keyCode != keyK)
            return LocalKeyEvents::Answer::passOn;
        // A busy machine may hold the key long enough for it to repeat.
        if (event.repeat == RawKeyEvent::Repeat::no)
            seen.push_back(event);
        return answer;
    });
    strike();
    EXPECT_THAT(seen, ElementsAre(RawKeyEvent { down, keyK, modifiers }, RawKeyEvent { up, keyK, modifiers }));
    EXPECT_EQ(window.presses, 1);
    answer = LocalKeyEvents::Answer::swallow;
    strike();
    EXPECT_EQ(seen.size(), 4U);
    EXPECT_EQ(window.presses, 1);
    observation.end();
    strike();
    EXPECT_EQ(seen.size(), 4U);
    EXPECT_EQ(window.presses, 2);

    int seenByItself = 0;
    observation = events.observe([&](RawKeyEvent const&) {
        observation.end(); // a monitor may end its own observation
        ++seenByItself;
        return LocalKeyEvents::Answer::passOn;
    });
    strike();
    EXPECT_EQ(seenByItself, 1);
}

}
}
