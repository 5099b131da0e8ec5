#pragma once

#include "KeyboardShortcuts/Shortcut.h"
#include "linux/x11/X11Connection.h"

#include <QRect>
#include <QString>

#include <optional>

namespace Quillory {

// The program as seen from outside, on the X server that DISPLAY names.
class DesktopView {
public:
    struct Reader {
        xcb_window_t window = XCB_WINDOW_NONE;
        QRect frame; // on the screen, in pixels
        QString title;

        // The place of the sheet's text: right of the list, below the bar, above the lower edge, left of a scroll bar.
        QRect readingArea() const;
        bool bearsASheetsTitle() const;
    };

    // `windowClass` in lower case is the class of the windows to look for.
    explicit DesktopView(X11Connection& connection, QByteArray windowClass = QByteArrayLiteral("quillory"));

    // The largest window of the class that is on the screen.
    std::optional<Reader> reader() const;

    bool isOnScreen(xcb_window_t window) const;

    // The window that the keys go to, as the window manager tells it, or else by the input focus.
    xcb_window_t frontWindow() const;

    // Whether some program holds the shortcut as a hot key. Absent when this keyboard can't type it.
    // Nothing can slip in between the probe's taking and giving back.
    std::optional<bool> isGrabbed(Shortcut const& shortcut) const;

private:
    void collect(xcb_window_t parent, int depth, std::optional<Reader>& largest) const;

    X11Connection& m_connection;
    QByteArray m_windowClass;
};

}
