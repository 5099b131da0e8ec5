#pragma once

#include "tools/x11/DesktopView.h"

#include "tools/x11/ScreenCapture.h"
#include "tools/x11/SyntheticKeyboard.h"

#include <chrono>
#include <expected>
#include <memory>
#include <optional>
#include <vector>

namespace Quillory {

// Calls a program's window with its shortcut and sends it away again, as the user does, and watches the screen
// meanwhile. Every failure is a sentence that names what was waited for.
class Summons {
public:
    using Milliseconds = std::chrono::duration<double, std::milli>;

    // A toggle acts when its key is let go, a peek lasts as long as it is held. A peer is measured by the whole of its
    // window but the edge, and may bear any title.
    enum class Manner { toggle, peek };
    struct Call {
        Shortcut shortcut;
        Manner manner = Manner::toggle;
        std::optional<QByteArray> peer; // the class of its window, in lower case
    };

    struct Shown {
        DesktopView::Reader reader;
        // From the key's release, or for a peek from its press. The first only where the area was known before.
        std::optional<Milliseconds> firstChange;
        Milliseconds finished;
    };
    struct Hidden {
        // From the key's release.
        Milliseconds unmapped;
        Milliseconds focusBack;
    };

    // `timeout` bounds each single wait.
    static std::expected<std::unique_ptr<Summons>, QString> open(Call const& call, std::chrono::seconds timeout);

    // The part that is watched for changes: the reading area, or most of a peer's window.
    QRect area(DesktopView::Reader const& reader) const;

    bool isGrabbed() const { return m_desktop.isGrabbed(m_call.shortcut).value_or(false); }

    // Waits until the program holds the shortcut.
    std::expected<void, QString> waitUntilGrabbed();

    // Waits until the reader shows a sheet and has stopped changing. With `known`, the area of a call before, the first
    // change there is timed too.
    std::expected<Shown, QString> show(std::optional<QRect> known = {});

    // Waits until the reader is gone and the window that was in front before `show` is so again.
    std::expected<Hidden, QString> hide(DesktopView::Reader const& reader);

    // The whole screen as a PNG file.
    std::expected<void, QString> savePicture(QString const& file);

private:
    using Clock = std::chrono::steady_clock;

    Summons(Call call, std::chrono::seconds timeout, std::unique_ptr<X11Connection> connection,
        std::unique_ptr<ScreenCapture> capture, std::unique_ptr<SyntheticKeyboard> keyboard);

    // Each gives the moment right before the key did what counts.
    Clock::time_point strikeToShow();
    Clock::time_point strikeToHide();
    Clock::time_point strike();
    Clock::time_point letGo();
    bool update(QRect const& area);
    bool becomesStill(QRect const& area);
    bool containsInk() const;
    QString whatIsMissing(std::optional<DesktopView::Reader> const& reader) const;
    QString seconds() const;

    Call m_call;
    std::chrono::seconds m_timeout;
    std::unique_ptr<X11Connection> m_connection;
    DesktopView m_desktop;
    std::unique_ptr<ScreenCapture> m_capture;
    std::unique_ptr<SyntheticKeyboard> m_keyboard;
    std::vector<std::uint32_t> m_pixels; // of the reading area, as last seen
    xcb_window_t m_frontBefore = 0;
};

}
