#pragma once

#include "Summons.h"

#include <QDBusConnection>

namespace Quillory {

// Calls the reader of a session that lies in a window of this X server, as a Wayland compositor's may, and sends it away
// again. All that is seen of it is pictures: every change in the middle of the screen, which the reader covers, counts.
// Every failure is a sentence.
class GuestCalls {
public:
    using Milliseconds = Summons::Milliseconds;

    enum class Road {
        key, // whose release on this server is what is timed
        bus, // of the session, where the program is asked to toggle
    };

    static std::expected<std::unique_ptr<GuestCalls>, QString> open(
        Shortcut const& shortcut, Road road, std::chrono::seconds timeout);

    // Toggles, and gives the time until the last change.
    std::expected<Milliseconds, QString> toggle();

private:
    using Clock = std::chrono::steady_clock;

    GuestCalls(Shortcut shortcut, Road road, std::chrono::seconds timeout, std::unique_ptr<ScreenCapture> capture,
        std::unique_ptr<SyntheticKeyboard> keyboard);

    Clock::time_point strike();
    Clock::time_point call();
    bool update();

    Shortcut m_shortcut;
    Road m_road;
    std::chrono::seconds m_timeout;
    std::unique_ptr<ScreenCapture> m_capture;
    std::unique_ptr<SyntheticKeyboard> m_keyboard;
    QDBusConnection m_bus;
    std::vector<std::uint32_t> m_pixels; // as last seen
};

}
