#include "GuestCalls.h"

#include <QDBusMessage>

#include <algorithm>
#include <utility>

namespace Quillory {

namespace {

using namespace std::chrono_literals;

// A picture that has not changed for so long is finished.
constexpr auto still = 150ms;

// How long a look waits for something to be drawn.
constexpr auto betweenLooks = 10ms;

}

std::expected<std::unique_ptr<GuestCalls>, QString> GuestCalls::open(
    Shortcut const& shortcut, Road road, std::chrono::seconds timeout)
{
    auto capture = ScreenCapture::open(ScreenCapture::Notices::ofDrawing);
    if (!capture)
        return std::unexpected(capture.error());
    auto keyboard = SyntheticKeyboard::open();
    if (!keyboard)
        return std::unexpected(keyboard.error());
    std::unique_ptr<GuestCalls> calls(
        new GuestCalls(shortcut, road, timeout, std::move(*capture), std::move(*keyboard)));
    if (road == Road::bus && !calls->m_bus.isConnected())
        return std::unexpected(QStringLiteral("The session's bus can't be reached."));
    return calls;
}

GuestCalls::GuestCalls(Shortcut shortcut, Road road, std::chrono::seconds timeout,
    std::unique_ptr<ScreenCapture> capture, std::unique_ptr<SyntheticKeyboard> keyboard)
    : m_shortcut(shortcut)
    , m_road(road)
    , m_timeout(timeout)
    , m_capture(std::move(capture))
    , m_keyboard(std::move(keyboard))
    , m_bus(QDBusConnection::sessionBus())
{
}

GuestCalls::Clock::time_point GuestCalls::strike()
{
    auto const key = static_cast<std::uint16_t>(m_shortcut.carbonKeyCode);
    m_keyboard->pressModifiers(m_shortcut.modifiers());
    m_keyboard->press(key);
    auto const struck = Clock::now();
    m_keyboard->release(key);
    m_keyboard->releaseModifiers(m_shortcut.modifiers());
    return struck;
}

GuestCalls::Clock::time_point GuestCalls::call()
{
    auto message = QDBusMessage::createMethodCall(QStringLiteral("org.quillory.Quillory"),
        QStringLiteral("/org/quillory/Quillory"), QStringLiteral("org.freedesktop.Application"),
        QStringLiteral("ActivateAction"));
    message << QStringLiteral("toggle") << QVariantList() << QVariantMap();
    auto const called = Clock::now();
    m_bus.send(message);
    return called;
}

std::expected<GuestCalls::Milliseconds, QString> GuestCalls::toggle()
{
    update();
    auto const struck = m_road == Road::key ? strike() : call();
    auto last = struck;
    while (Clock::now() < struck + m_timeout) {
        bool const isDrawn = m_capture->waitForDrawing(betweenLooks);
        auto const now = Clock::now();
        if (isDrawn && update())
            last = now;
        else if (last != struck && now - last >= still)
            return last - struck;
    }
    return std::unexpected(QStringLiteral("Nothing on the screen changed, or it did not keep still."));
}

// The window that loses the keyboard may change, too: around the reader nothing is looked at.
bool GuestCalls::update()
{
    auto const screen = m_capture->screen();
    auto const now = m_capture->pixels(
        { screen.width() / 4, screen.height() / 4, screen.width() / 2, screen.height() / 2 });
    if (std::ranges::equal(now, m_pixels))
        return false;
    m_pixels.assign(now.begin(), now.end());
    return true;
}

}
