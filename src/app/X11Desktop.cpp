#include "X11Desktop.h"

#include "linux/x11/VirtualKeys.h"
#include "linux/x11/X11PanelWindow.h"

#include <QWindow>

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace Quillory {

namespace {

void flushWindows(QApplication const& application)
{
    if (auto* const x11 = application.nativeInterface<QNativeInterface::QX11Application>())
        xcb_flush(x11->connection());
}

bool isOwnWindow(std::uint32_t number)
{
    auto const isIt = [&](QWindow const* window) { return window->handle() && window->winId() == number; };
    return std::ranges::any_of(QGuiApplication::topLevelWindows(), isIt);
}

}

X11Desktop::ToolkitChoice::ToolkitChoice()
    : m_isOurs(!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
{
    if (m_isOurs)
        qputenv("QT_QPA_PLATFORM", "xcb");
}

void X11Desktop::ToolkitChoice::forget() const
{
    if (m_isOurs)
        qunsetenv("QT_QPA_PLATFORM");
}

std::expected<void, QString> X11Desktop::probe()
{
    if (auto const connection = X11Connection::open(); !connection)
        return std::unexpected(connection.error());
    return {};
}

std::expected<std::unique_ptr<X11Desktop>, QString> X11Desktop::open(QApplication const& application)
{
    auto connection = X11Connection::open();
    auto listening = X11Connection::open();
    if (!connection || !listening)
        return std::unexpected((connection ? listening : connection).error());
    return std::unique_ptr<X11Desktop>(new X11Desktop(application, *std::move(connection), *std::move(listening)));
}

X11Desktop::X11Desktop(QApplication const& application, std::unique_ptr<X11Connection> connection,
    std::unique_ptr<X11Connection> listening)
    : m_flushOwnWindows([&application] { flushWindows(application); })
    , m_connection(std::move(connection))
    , m_listening(std::move(listening))
    , m_session(sessionOf(*m_listening))
    , m_compositing(*m_connection)
    , m_embeddingTray(*m_connection, "_NET_SYSTEM_TRAY_S0")
    , m_userTimes(m_clock)
    , m_hotKeys(*m_connection, m_clock)
    , m_keys(*m_listening)
    , m_peekKeys(*m_listening, m_keys, m_session, isOwnWindow)
    , m_localKeyEvents(
          [](std::uint32_t scanCode) { return VirtualKeys::virtualKeyCode(static_cast<std::uint8_t>(scanCode)); },
          m_keys)
    , m_workspace(*m_connection, m_clock, m_flushOwnWindows, m_session)
    , m_permission(*m_listening, m_session)
    , m_modifierEvents(*m_listening, m_clock, m_permission)
    , m_keyboardLayout(*m_connection)
    , m_keyStrokes(*m_connection)
{
    m_connection->onLost = [] { QCoreApplication::exit(EXIT_FAILURE); };
    m_hotKeys.isOwnWindow = isOwnWindow;
}

std::unique_ptr<PanelWindow> X11Desktop::panelWindow(std::uint64_t window)
{
    return std::make_unique<X11PanelWindow>(*m_connection, static_cast<xcb_window_t>(window), m_flushOwnWindows);
}

void X11Desktop::noteUserTime(std::optional<std::uint32_t> time)
{
    // Any program can claim a time. One that is still to come would outweigh all real ones for as long.
    auto const present = m_connection->presentTime();
    m_clock.note(time && !X11Clock::isLater(*time, present) ? *time : present);
}

}
