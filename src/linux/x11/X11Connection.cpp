#include "linux/x11/X11Connection.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QSocketNotifier>

#include <cstring>
#include <utility>

namespace Quillory {

std::expected<std::unique_ptr<X11Connection>, QString> X11Connection::open()
{
    int screenNumber = 0;
    auto* connection = xcb_connect(nullptr, &screenNumber);
    if (xcb_connection_has_error(connection)) {
        xcb_disconnect(connection);
        auto const display = qEnvironmentVariable("DISPLAY");
        if (display.isEmpty())
            return std::unexpected(
                QCoreApplication::translate("X11Connection", "There is no X display: DISPLAY is not set."));
        return std::unexpected(
            QCoreApplication::translate("X11Connection", "The X display %1 can't be reached.").arg(display));
    }
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
    while (screenNumber-- > 0 && screens.rem > 1)
        xcb_screen_next(&screens);
    return std::unique_ptr<X11Connection>(new X11Connection(connection, screens.data));
}

X11Connection::X11Connection(xcb_connection_t* connection, xcb_screen_t const* screen)
    : m_connection(connection)
    , m_screen(screen)
{
    auto* dispatcher = QAbstractEventDispatcher::instance();
    if (!dispatcher)
        return;
    m_notifier = std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(connection), QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, m_notifier.get(), [this] { drain(); });
    // A reply that we waited for may have brought events along; the socket then has nothing left to wake us with.
    m_beforeWaiting = QObject::connect(
        dispatcher, &QAbstractEventDispatcher::aboutToBlock, m_notifier.get(), [this] { drain(); });
}

X11Connection::~X11Connection()
{
    QObject::disconnect(m_beforeWaiting);
    m_notifier.reset();
    xcb_disconnect(m_connection);
}

void X11Connection::listenOnRoot(std::uint32_t eventMask)
{
    m_rootEventMask |= eventMask;
    xcb_change_window_attributes(m_connection, root(), XCB_CW_EVENT_MASK, &m_rootEventMask);
    xcb_flush(m_connection);
}

void X11Connection::drain()
{
    while (auto const event = nextEvent()) {
        bool const isError = event->response_type == 0;
        if (!isError)
            m_handlers.tell(*event);
    }
    xcb_flush(m_connection);
    bool const isLost = xcb_connection_has_error(m_connection) != 0;
    if (!isLost)
        return;
    if (m_notifier)
        m_notifier->setEnabled(false);
    if (auto const call = std::exchange(onLost, nullptr))
        call();
}

XcbOwned<xcb_generic_event_t> X11Connection::nextEvent()
{
    if (m_waiting.empty())
        return XcbOwned<xcb_generic_event_t>(xcb_poll_for_event(m_connection));
    auto event = std::move(m_waiting.front());
    m_waiting.pop_front();
    return event;
}

std::uint32_t X11Connection::presentTime()
{
    if (m_timekeeper == XCB_WINDOW_NONE) {
        m_timekeeper = xcb_generate_id(m_connection);
        std::uint32_t const events = XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_create_window(m_connection, 0, m_timekeeper, root(), -1, -1, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
            XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
    }
    // Nothing is appended, and still the server tells of it, before it answers the check.
    succeeded(xcb_change_property_checked(
        m_connection, XCB_PROP_MODE_APPEND, m_timekeeper, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8, 0, nullptr));
    std::uint32_t time = 0;
    while (XcbOwned<xcb_generic_event_t> event { xcb_poll_for_event(m_connection) }) {
        auto const& change = reinterpret_cast<xcb_property_notify_event_t const&>(*event);
        if (event->response_type == XCB_PROPERTY_NOTIFY && change.window == m_timekeeper)
            time = change.time;
        else
            m_waiting.push_back(std::move(event));
    }
    return time;
}

bool X11Connection::succeeded(xcb_void_cookie_t checked) const
{
    return !XcbOwned<xcb_generic_error_t>(xcb_request_check(m_connection, checked))
        && !xcb_connection_has_error(m_connection);
}

QByteArray X11Connection::property(xcb_window_t window, char const* name)
{
    constexpr std::uint32_t longest = 1U << 16; // words; nothing that we read comes near
    auto cookie = xcb_get_property(m_connection, 0, window, atom(name), XCB_GET_PROPERTY_TYPE_ANY, 0, longest);
    XcbOwned<xcb_get_property_reply_t> reply(xcb_get_property_reply(m_connection, cookie, nullptr));
    if (!reply)
        return {};
    return { static_cast<char const*>(xcb_get_property_value(reply.get())),
        xcb_get_property_value_length(reply.get()) };
}

std::optional<std::uint32_t> X11Connection::number(xcb_window_t window, char const* name)
{
    auto const bytes = property(window, name);
    std::uint32_t value = 0;
    if (static_cast<std::size_t>(bytes.size()) >= sizeof value)
        std::memcpy(&value, bytes.constData(), sizeof value);
    return value ? std::optional(value) : std::nullopt;
}

bool X11Connection::lists(xcb_window_t window, char const* name, std::uint32_t number)
{
    auto const bytes = property(window, name);
    for (qsizetype at = 0; at + qsizetype { sizeof number } <= bytes.size(); at += qsizetype { sizeof number }) {
        std::uint32_t listed = 0;
        std::memcpy(&listed, bytes.constData() + at, sizeof listed);
        if (listed == number)
            return true;
    }
    return false;
}

xcb_atom_t X11Connection::atom(char const* name)
{
    if (auto known = m_atoms.find(name); known != m_atoms.end())
        return known->second;
    auto cookie = xcb_intern_atom(m_connection, 0, static_cast<std::uint16_t>(std::strlen(name)), name);
    XcbOwned<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(m_connection, cookie, nullptr));
    if (!reply)
        return XCB_ATOM_NONE;
    return m_atoms[name] = reply->atom;
}

}
