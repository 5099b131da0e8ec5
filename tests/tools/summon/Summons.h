#pragma once

#include "DesktopView.h"

#include "support/ScreenCapture.h"
#include "support/SyntheticKeyboard.h"

#include <chrono>
#include <expected>
#include <memory>
#include <optional>
#include <vector>

namespace Quillory {

// Calls the reader with its shortcut and sends it away again, as the user does, and watches the screen meanwhile.
// Every failure is a sentence that names what was waited for.
class Summons {
public:
    using Milliseconds = std::chrono::duration<double, std::milli>;

    struct Shown {
        DesktopView::Reader reader;
        // From the release of the key. The first only where the reading area was known before.
        std::optional<Milliseconds> firstChange;
        Milliseconds finished;
    };
    struct Hidden {
        Milliseconds unmapped;
        Milliseconds focusBack;
    };

    // `timeout` bounds each single wait.
    static std::expected<std::unique_ptr<Summons>, QString> open(Shortcut const& toggle, std::chrono::seconds timeout);

    // Waits until the program holds the shortcut.
    std::expected<void, QString> waitUntilGrabbed();

    // Waits until the reader shows a sheet and has stopped changing. With `area`, the reading area of a call before,
    // the first change there is timed too.
    std::expected<Shown, QString> show(std::optional<QRect> area = {});

    // Waits until the reader is gone and the window that was in front before `show` is so again.
    std::expected<Hidden, QString> hide(DesktopView::Reader const& reader);

    // The whole screen as a PNG file.
    std::expected<void, QString> savePicture(QString const& file);

private:
    using Clock = std::chrono::steady_clock;

    Summons(Shortcut const& toggle, std::chrono::seconds timeout, std::unique_ptr<X11Connection> connection,
        std::unique_ptr<ScreenCapture> capture, std::unique_ptr<SyntheticKeyboard> keyboard);

    // Gives the moment right before the key was let go.
    Clock::time_point strike();
    bool update(QRect const& area);
    bool becomesStill(QRect const& area);
    bool containsInk() const;
    QString whatIsMissing(std::optional<DesktopView::Reader> const& reader) const;
    QString seconds() const;

    Shortcut m_toggle;
    std::chrono::seconds m_timeout;
    std::unique_ptr<X11Connection> m_connection;
    DesktopView m_desktop;
    std::unique_ptr<ScreenCapture> m_capture;
    std::unique_ptr<SyntheticKeyboard> m_keyboard;
    std::vector<std::uint32_t> m_pixels; // of the reading area, as last seen
    xcb_window_t m_frontBefore = 0;
};

}
