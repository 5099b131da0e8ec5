#pragma once

#include "linux/x11/VirtualKeys.h"
#include "linux/x11/X11Clock.h"
#include "linux/x11/X11Connection.h"
#include "support/EventLoop.h"
#include "support/Keys.h"
#include "support/OtherProgram.h"
#include "support/Test.h"
#include "tools/x11/SyntheticKeyboard.h"

#include <QProcess>

#include <algorithm>

namespace Quillory {

// The display that DISPLAY names, with the adapters' connection, the user's hands and another program. What the user
// does returns when all that follows from it has been delivered.
class X11Desk : public Test {
public:
    void press(std::uint16_t keyCode)
    {
        keyboard->press(keyCode);
        settle();
    }
    void release(std::uint16_t keyCode)
    {
        keyboard->release(keyCode);
        settle();
    }
    void play(QString const& script)
    {
        Quillory::play(*keyboard, script);
        settle();
    }

    // The server deals with a synthetic key at once; a round trip later all that follows from it is here.
    void settle()
    {
        other.pressedKeys();
        XcbOwned<xcb_get_input_focus_reply_t>(xcb_get_input_focus_reply(xcb, xcb_get_input_focus(xcb), nullptr));
        connection->drain();
    }

    // How often the key has gone down in windows of the other program.
    auto pressesElsewhere(std::uint16_t keyCode)
    {
        return std::ranges::count(other.pressedKeys(), VirtualKeys::serverKeyCode(keyCode));
    }

    xcb_window_t openFocusedWindow()
    {
        auto const window = other.open({ .windowClass = "Editor", .process = {} });
        other.focus(window);
        return window;
    }

    // The user's choice of a keyboard map, as a desktop makes it.
    static void useMap(QStringList const& arguments = { u"us"_s })
    {
        EXPECT_EQ(QProcess::execute(u"setxkbmap"_s, QStringList { u"-option"_s, {} } + arguments), 0);
    }

    EventLoop loop;
    std::unique_ptr<X11Connection> const connection = X11Connection::open().value();
    xcb_connection_t* const xcb = connection->handle();
    X11Clock clock;
    OtherProgram other;
    std::unique_ptr<SyntheticKeyboard> const keyboard = SyntheticKeyboard::open().value();
};

}
