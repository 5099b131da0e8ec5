#include "LocalKeyEventsContract.h"

#include "platform/linux/qt/QtLocalKeyEvents.h"
#include "platform/linux/x11/VirtualKeys.h"
#include "support/EventLoop.h"
#include "tools/x11/SyntheticKeyboard.h"

#include <QKeyEvent>
#include <QWidget>

namespace Quillory {
namespace {

std::optional<std::uint16_t> virtualKeyCode(std::uint32_t scanCode)
{
    return VirtualKeys::virtualKeyCode(static_cast<std::uint8_t>(scanCode));
}

class CountingWindow final : public QWidget {
public:
    int presses = 0;

protected:
    void keyPressEvent(QKeyEvent* event) override { presses += event->key() == Qt::Key_K; }
};

class X11LocalKeyEventsDesk final : public LocalKeyEventsDesk {
public:
    X11LocalKeyEventsDesk()
    {
        m_window.show();
        m_window.activateWindow();
        EXPECT_TRUE(m_loop.runUntil([&] { return m_window.isActiveWindow(); }));
    }

    LocalKeyEvents& events() override { return m_events; }
    void press(std::uint16_t keyCode, ModifierFlags modifiers) override
    {
        m_keyboard->pressModifiers(modifiers);
        act([&] { m_keyboard->press(keyCode); }, keyCode, RawKeyEvent::Kind::down);
    }
    void release(std::uint16_t keyCode, ModifierFlags modifiers) override
    {
        act([&] { m_keyboard->release(keyCode); }, keyCode, RawKeyEvent::Kind::up);
        m_keyboard->releaseModifiers(modifiers);
    }
    int pressesInTheWindow() const override { return m_window.presses; }

private:
    // The latest observer is asked first; the turn in which it was is over once the loop asks for the condition.
    void act(std::function<void()> const& strike, std::uint16_t keyCode, RawKeyEvent::Kind kind)
    {
        bool isDelivered = false;
        QtLocalKeyEvents before(virtualKeyCode);
        auto const watching = before.observe([&](RawKeyEvent const& event) {
            isDelivered = isDelivered || (event.keyCode == keyCode && event.kind == kind);
            return LocalKeyEvents::Answer::passOn;
        });
        strike();
        EXPECT_TRUE(m_loop.runUntil([&] { return isDelivered; }));
    }

    EventLoop m_loop;
    CountingWindow m_window;
    QtLocalKeyEvents m_events { virtualKeyCode };
    std::unique_ptr<SyntheticKeyboard> m_keyboard = SyntheticKeyboard::open().value();
};

INSTANTIATE_TEST_SUITE_P(X11, LocalKeyEventsContract, deskOf<X11LocalKeyEventsDesk>("x11"));

}
}
