#include "linux/x11/X11Workspace.h"

#include <unistd.h>

#include <algorithm>
#include <array>

namespace Quillory {

namespace {

constexpr auto activeWindow = "_NET_ACTIVE_WINDOW";
constexpr auto windowManagerCheck = "_NET_SUPPORTING_WM_CHECK";

constexpr xcb_window_t noWindow = XCB_WINDOW_NONE;

// Tells window managers that the user asked for it, not the window itself.
constexpr std::uint32_t sourceIsTheUser = 2;

constexpr std::uint8_t sentEventBit = 0x80;

// Between two windows there is none for a moment, in which the last one still counts.
constexpr std::chrono::milliseconds passing { 50 };

// WM_CLASS holds two strings, each with a NUL at its end: the instance and the class.
QString classPart(QByteArray const& windowClass)
{
    auto const parts = windowClass.split('\0');
    return parts.size() > 1 ? QString::fromLatin1(parts[1]) : QString();
}

}

X11Workspace::X11Workspace(
    X11Connection& connection, X11Clock const& clock, std::function<void()> flushOwnWindows, X11Session session)
    : m_connection(connection)
    , m_clock(clock)
    , m_flushOwnWindows(std::move(flushOwnWindows))
    , m_session(session)
{
    m_foreignWindow.setSingleShot(true);
    m_foreignWindow.setTimerType(Qt::PreciseTimer);
    m_foreignWindow.callOnTimeout([this] { tellOfForeignWindow(); });
    m_events = m_connection.observeEvents([this](auto const& event) { handle(event); });
    m_connection.listenOnRoot(XCB_EVENT_MASK_PROPERTY_CHANGE);
    m_front = m_connection.number(m_connection.root(), activeWindow).value_or(noWindow);
    if (m_front == noWindow)
        m_noFrontSince.emplace(); // nothing is passing here
}

QString X11Workspace::mainBundleIdentifier() const
{
    return QStringLiteral("quillory");
}

std::optional<RunningApplication> X11Workspace::frontmostApplication() const
{
    if (!isManaged())
        return focusedApplication();
    auto const front = frontWindow();
    return front ? describe(*front, *front) : std::nullopt;
}

std::optional<xcb_window_t> X11Workspace::frontWindow() const
{
    auto const front = m_connection.number(m_connection.root(), activeWindow);
    noteFront(front);
    if (front)
        return front;
    bool const isPassing = std::chrono::steady_clock::now() - *m_noFrontSince < passing;
    return isPassing && m_front != noWindow ? std::optional(m_front) : std::nullopt;
}

void X11Workspace::noteFront(std::optional<xcb_window_t> front) const
{
    if (front)
        m_noFrontSince.reset();
    else if (!m_noFrontSince)
        m_noFrontSince = std::chrono::steady_clock::now();
}

std::optional<QRect> X11Workspace::frontmostFrame() const
{
    auto const front = isManaged() ? frontWindow() : focusedWindow();
    if (!front)
        return std::nullopt;
    auto* const xcb = m_connection.handle();
    auto const sizeCookie = xcb_get_geometry(xcb, *front);
    auto const placeCookie = xcb_translate_coordinates(xcb, *front, m_connection.root(), 0, 0);
    XcbOwned<xcb_get_geometry_reply_t> const size(xcb_get_geometry_reply(xcb, sizeCookie, nullptr));
    XcbOwned<xcb_translate_coordinates_reply_t> const place(xcb_translate_coordinates_reply(xcb, placeCookie, nullptr));
    if (!size || !place)
        return std::nullopt;
    return QRect(place->dst_x, place->dst_y, size->width, size->height);
}

// The root names a window of the window manager, which names itself as long as the window manager lives.
bool X11Workspace::isManaged() const
{
    auto const check = m_connection.number(m_connection.root(), windowManagerCheck);
    return check && m_connection.number(*check, windowManagerCheck) == check;
}

std::optional<RunningApplication> X11Workspace::describe(xcb_window_t named, xcb_window_t front) const
{
    auto const windowClass = m_connection.property(named, "WM_CLASS");
    auto const process = m_connection.number(named, "_NET_WM_PID");
    if (m_ownWindows.contains(named) || process == static_cast<std::uint32_t>(getpid()))
        return RunningApplication { mainBundleIdentifier(), front };
    auto* const xcb = m_connection.handle();
    XcbOwned<xcb_get_window_attributes_reply_t> const living(
        xcb_get_window_attributes_reply(xcb, xcb_get_window_attributes(xcb, named), nullptr));
    if (!living)
        return std::nullopt;
    return RunningApplication { classPart(windowClass), front };
}

std::optional<RunningApplication> X11Workspace::focusedApplication() const
{
    auto const focus = inputFocus();
    auto const named = focus ? nearestWithClass(pointedAtOr(*focus)) : std::nullopt;
    return named ? describe(*named, *focus) : std::nullopt;
}

std::optional<xcb_window_t> X11Workspace::focusedWindow() const
{
    auto const focus = inputFocus();
    return focus ? nearestWithClass(pointedAtOr(*focus)) : std::nullopt;
}

std::optional<xcb_window_t> X11Workspace::inputFocus() const
{
    auto* const xcb = m_connection.handle();
    XcbOwned<xcb_get_input_focus_reply_t> const reply(
        xcb_get_input_focus_reply(xcb, xcb_get_input_focus(xcb), nullptr));
    return reply && reply->focus != XCB_INPUT_FOCUS_NONE ? std::optional(reply->focus) : std::nullopt;
}

// The keys may go to whatever is under the pointer; giving the focus back then means to restore that.
xcb_window_t X11Workspace::pointedAtOr(xcb_window_t focus) const
{
    bool const followsPointer = focus == XCB_INPUT_FOCUS_POINTER_ROOT || focus == m_connection.root();
    return followsPointer ? windowUnderPointer() : focus;
}

xcb_window_t X11Workspace::windowUnderPointer() const
{
    auto* const xcb = m_connection.handle();
    XcbOwned<xcb_query_pointer_reply_t> const pointer(
        xcb_query_pointer_reply(xcb, xcb_query_pointer(xcb, m_connection.root()), nullptr));
    return pointer ? pointer->child : noWindow;
}

// The focus is often on a nameless window inside of the one that bears the class.
std::optional<xcb_window_t> X11Workspace::nearestWithClass(xcb_window_t window) const
{
    auto* const xcb = m_connection.handle();
    while (window != noWindow && window != m_connection.root()) {
        if (!m_connection.property(window, "WM_CLASS").isEmpty())
            return window;
        XcbOwned<xcb_query_tree_reply_t> const tree(xcb_query_tree_reply(xcb, xcb_query_tree(xcb, window), nullptr));
        window = tree ? tree->parent : noWindow;
    }
    return std::nullopt;
}

void X11Workspace::activate(RunningApplication const& application)
{
    if (application.window != 0)
        bringToFront(static_cast<xcb_window_t>(application.window));
}

void X11Workspace::activateIgnoringOtherApps(std::uint64_t ownWindow)
{
    auto const window = static_cast<xcb_window_t>(ownWindow);
    m_ownWindows.insert(window);
    bringToFront(window);
}

// A window that is gone meanwhile is an error of the server's that is nobody's concern.
void X11Workspace::bringToFront(xcb_window_t window)
{
    // Windows shown or hidden just before have to reach the server first.
    if (m_flushOwnWindows)
        m_flushOwnWindows();
    // The toolkit puts the last time that it saw in the place of the user's as it shows a window.
    if (m_ownWindows.contains(window))
        writeUserTime(window);
    auto* const xcb = m_connection.handle();
    if (!isManaged()) {
        m_connection.succeeded(xcb_set_input_focus_checked(xcb, XCB_INPUT_FOCUS_PARENT, window, XCB_CURRENT_TIME));
        return;
    }
    // A time before the last change would look like an outdated wish.
    auto time = m_frontChanges;
    time.note(m_clock.latest());
    auto const front = m_connection.number(m_connection.root(), activeWindow).value_or(noWindow);
    xcb_client_message_event_t message {};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = m_connection.atom(activeWindow);
    message.data.data32[0] = sourceIsTheUser;
    message.data.data32[1] = time.latest();
    message.data.data32[2] = m_ownWindows.contains(front) ? front : noWindow;
    m_connection.succeeded(xcb_send_event_checked(xcb, 0, m_connection.root(),
        XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
        reinterpret_cast<char const*>(&message)));
}

// Sway has workspaces of its own, which X programs see nothing of, and calls a window that is up urgent at most.
bool X11Workspace::canFetchWindows() const
{
    return m_connection.lists(m_connection.root(), "_NET_SUPPORTED", m_connection.atom("_NET_WM_DESKTOP"));
}

void X11Workspace::prepareToShow(std::uint64_t ownWindow)
{
    auto const window = static_cast<xcb_window_t>(ownWindow);
    m_foreignWindow.stop(); // that it had the front is no news any more, and would end the peek that this begins
    if (m_ownWindows.insert(window).second)
        makeFloating(window);
    writeUserTime(window);
}

// In the place of the types that the toolkit gave it. Tiling window managers float what is a utility by any of its types.
// The others go by the first, and some would put a utility behind the window that had the front.
void X11Workspace::makeFloating(xcb_window_t window)
{
    if (m_flushOwnWindows)
        m_flushOwnWindows();
    std::array const types { m_connection.atom("_NET_WM_WINDOW_TYPE_NORMAL"),
        m_connection.atom("_NET_WM_WINDOW_TYPE_UTILITY") };
    m_connection.succeeded(xcb_change_property_checked(m_connection.handle(), XCB_PROP_MODE_REPLACE, window,
        m_connection.atom("_NET_WM_WINDOW_TYPE"), XCB_ATOM_ATOM, 32, types.size(), types.data()));
}

// A window may name another one for its user time, as the toolkit's do; that one counts.
void X11Workspace::writeUserTime(xcb_window_t window)
{
    auto const time = m_clock.latest();
    if (time == 0)
        return;
    auto const bearer = m_connection.number(window, "_NET_WM_USER_TIME_WINDOW").value_or(window);
    m_connection.succeeded(xcb_change_property_checked(m_connection.handle(), XCB_PROP_MODE_REPLACE, bearer,
        m_connection.atom("_NET_WM_USER_TIME"), XCB_ATOM_CARDINAL, 32, 1, &time));
}

Registration X11Workspace::observeActivation(std::function<void(RunningApplication const&)> activated)
{
    // A window that came to the front before is no news, also when the server's event is still on its way.
    if (m_observers.isEmpty())
        m_front = m_connection.number(m_connection.root(), activeWindow).value_or(m_front);
    return m_observers.add(std::move(activated));
}

void X11Workspace::handle(xcb_generic_event_t const& event)
{
    if ((event.response_type & ~sentEventBit) != XCB_PROPERTY_NOTIFY)
        return;
    auto const& change = reinterpret_cast<xcb_property_notify_event_t const&>(event);
    if (change.window != m_connection.root() || change.atom != m_connection.atom(activeWindow))
        return;
    m_frontChanges.note(change.time);
    auto const front = m_connection.number(m_connection.root(), activeWindow);
    noteFront(front);
    m_foreignWindow.stop();
    // Also when a window of the server's had it for too short a time to be seen.
    if (!front && m_session == X11Session::guest)
        m_foreignWindow.start(passing);
    if (!front || *front == m_front)
        return;
    auto const application = describe(*front, *front);
    if (!application)
        return;
    m_front = *front;
    m_observers.tell(*application);
}

// The compositor's own windows are none of the server's: that none has the front is all that is seen of them.
void X11Workspace::tellOfForeignWindow()
{
    if (m_connection.number(m_connection.root(), activeWindow))
        return; // the notice of it is on its way
    m_front = noWindow;
    m_observers.tell(RunningApplication {});
}

}
