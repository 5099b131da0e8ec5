#pragma once

#include "e2e/Desktop.h"
#include "e2e/Program.h"
#include "e2e/Terminal.h"
#include "support/EventLoop.h"
#include "support/Test.h"

namespace Quillory {

inline Shortcut const toggle { 40, Shortcut::carbonModifiersOf(ModifierFlags::control | ModifierFlags::option) };

inline QByteArray sheetOf(QByteArray const& title)
{
    return "# " + title + "\n\nWhat is to be read.\n\n```sh\nls -l\ndf -h\nfree -m\n```\n";
}

// The program beside a terminal that has the front.
class ReaderOnADesktop : public Test {
protected:
    void storePeek(Shortcut const& shortcut)
    {
        program.setSetting(u"KeyboardShortcuts_peekQuillory"_s, shortcut.encoded());
        last = shortcut;
    }

    void start()
    {
        program.start();
        ASSERT_TRUE(Desktop::eventually([&] { return desktop.isGrabbed(last) || !program.isRunning(); }));
        ASSERT_TRUE(program.isRunning());
    }

    // On the screen and with the keyboard.
    bool isUp()
    {
        return Desktop::eventually([&] { return desktop.reader().has_value(); });
    }

    bool comesUp()
    {
        desktop.play(u"ctrl+alt+K"_s);
        return isUp();
    }

    bool isAwayAndFrontIs(xcb_window_t window)
    {
        return Desktop::eventually([&] { return !desktop.isReaderOnScreen() && desktop.frontWindow() == window; });
    }

    // Away, and the keyboard with the window that had it.
    bool goesAwayTo(xcb_window_t window)
    {
        desktop.play(u"ctrl+alt+K"_s);
        return isAwayAndFrontIs(window);
    }

    // By the button for it, which stands somewhere below the middle of the reading side while there is no folder.
    bool opensFileDialog(DesktopView::Reader const& panel)
    {
        auto const area = panel.readingArea();
        int below = 0;
        return Desktop::eventually([&] {
            constexpr int step = 8, reach = 120;
            below = (below + step) % reach;
            desktop.click({ area.center().x(), area.center().y() + below });
            auto const front = desktop.frontWindow();
            return front != XCB_NONE && front != panel.window;
        });
    }

    // By the window's title, to which the toolkit adds the program's name.
    AssertionResult shows(QString const& title)
    {
        std::optional<DesktopView::Reader> seen;
        auto const isShown = [&] {
            seen = desktop.reader();
            return seen && (seen->title == title || seen->title == title + QStringLiteral(" — Quillory"));
        };
        if (Desktop::eventually(isShown))
            return AssertionSuccess();
        return AssertionFailure() << "the reader shows \"" << (seen ? seen->title.toStdString() : "nothing") << '"';
    }

    EventLoop loop;
    Desktop desktop;
    Program program;
    Shortcut last = toggle; // of those that the program takes, one after the other
    Terminal terminal { desktop, program.path(QStringLiteral("first")) };
};

}
