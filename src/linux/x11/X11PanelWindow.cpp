#include "linux/x11/X11PanelWindow.h"

#include <QRect>

#include <xcb/xfixes.h>

#include <algorithm>
#include <array>
#include <utility>

namespace Quillory {

namespace {

constexpr auto stateProperty = "_NET_WM_STATE";
constexpr auto aboveState = "_NET_WM_STATE_ABOVE";
constexpr auto stickyState = "_NET_WM_STATE_STICKY";
constexpr auto desktopProperty = "_NET_WM_DESKTOP";

// Flags, functions, decorations, input mode and status of a window without a frame that can be resized (2), moved (4)
// and closed (32), but, being on no task bar, not minimized.
constexpr std::array<std::uint32_t, 5> motifWindow { 1 | 2, 2 | 4 | 32, 0, 0, 0 };

constexpr std::uint32_t removeState = 0;
constexpr std::uint32_t addState = 1;
constexpr std::uint32_t sourceIsAnApplication = 1;
constexpr std::uint32_t allDesktops = 0xFFFFFFFF;

}

X11PanelWindow::X11PanelWindow(X11Connection& connection, xcb_window_t window, std::function<void()> flushOwnWindows)
    : m_connection(connection)
    , m_window(window)
    , m_flushOwnWindows(std::move(flushOwnWindows))
{
    describe();
}

// In the place of what the toolkit made of the window as such.
void X11PanelWindow::describe()
{
    auto* const xcb = m_connection.handle();
    if (m_flushOwnWindows)
        m_flushOwnWindows();
    auto const motifHints = m_connection.atom("_MOTIF_WM_HINTS");
    m_connection.succeeded(xcb_change_property_checked(
        xcb, XCB_PROP_MODE_REPLACE, m_window, motifHints, motifHints, 32, motifWindow.size(), motifWindow.data()));
}

void X11PanelWindow::setLevel(WindowLevel level)
{
    if (std::exchange(m_level, level) != level && m_isShown)
        tellLevel();
}

void X11PanelWindow::setCollectionBehavior(CollectionBehavior behavior)
{
    if (std::exchange(m_behavior, behavior) != behavior && m_isShown)
        tellWorkspaces();
}

void X11PanelWindow::setShadow(QMargins shadow, QSize window)
{
    auto* const xcb = m_connection.handle();
    auto const extents = m_connection.atom("_GTK_FRAME_EXTENTS");
    auto const inside = QRect(QPoint(), window).marginsRemoved(shadow);
    xcb_xfixes_region_t region = XCB_XFIXES_REGION_NONE; // all of it
    if (shadow.isNull()) {
        xcb_delete_property(xcb, m_window, extents);
    } else {
        std::array const sides { shadow.left(), shadow.right(), shadow.top(), shadow.bottom() };
        xcb_change_property(
            xcb, XCB_PROP_MODE_REPLACE, m_window, extents, XCB_ATOM_CARDINAL, 32, sides.size(), sides.data());
        xcb_rectangle_t const taken { static_cast<std::int16_t>(inside.x()), static_cast<std::int16_t>(inside.y()),
            static_cast<std::uint16_t>(inside.width()), static_cast<std::uint16_t>(inside.height()) };
        region = xcb_generate_id(xcb);
        xcb_xfixes_create_region(xcb, region, 1, &taken);
    }
    xcb_xfixes_set_window_shape_region(xcb, m_window, XCB_SHAPE_SK_INPUT, 0, 0, region);
    if (region != XCB_XFIXES_REGION_NONE)
        xcb_xfixes_destroy_region(xcb, region);
    xcb_flush(xcb);
}

// Window managers read the property when a window is shown, and clear it when one is hidden.
void X11PanelWindow::willShow()
{
    m_isUp = true;
    if (m_isShown)
        return;
    m_wasActive = isActive();
    auto const wanted = states();
    m_connection.succeeded(xcb_change_property_checked(m_connection.handle(), XCB_PROP_MODE_REPLACE, m_window,
        m_connection.atom(stateProperty), XCB_ATOM_ATOM, 32, static_cast<std::uint32_t>(wanted.size()), wanted.data()));
}

// A window that was up already may stand on another workspace, from where no activation fetches it.
void X11PanelWindow::didShow()
{
    bool const isNew = !std::exchange(m_isShown, true);
    if (std::exchange(m_wasActive, false))
        takeForgottenFocus();
    if (isNew && m_level == WindowLevel::normal && !isOnAllWorkspaces())
        return;
    if (m_flushOwnWindows)
        m_flushOwnWindows();
    if (isNew)
        tellLevel();
    tellWorkspaces();
}

bool X11PanelWindow::isActive() const
{
    return m_connection.number(m_connection.root(), "_NET_ACTIVE_WINDOW") == m_window;
}

// A compositor that has called the window active all along, as sway does on a workspace with no other window, takes its
// focus for granted. The server has dropped it when the window was hidden.
void X11PanelWindow::takeForgottenFocus()
{
    auto* const xcb = m_connection.handle();
    if (!isActive())
        return;
    XcbOwned<xcb_get_input_focus_reply_t> const focus(
        xcb_get_input_focus_reply(xcb, xcb_get_input_focus(xcb), nullptr));
    if (focus && (focus->focus == XCB_INPUT_FOCUS_NONE || focus->focus == XCB_INPUT_FOCUS_POINTER_ROOT))
        m_connection.succeeded(
            xcb_set_input_focus_checked(xcb, XCB_INPUT_FOCUS_POINTER_ROOT, m_window, XCB_CURRENT_TIME));
}

// Some window managers also call a window iconic that is on another workspace, but not hidden.
bool X11PanelWindow::isMinimized() const
{
    return m_isUp && m_connection.lists(m_window, stateProperty, m_connection.atom("_NET_WM_STATE_HIDDEN"));
}

void X11PanelWindow::didHide()
{
    m_isUp = m_isShown = false;
}

bool X11PanelWindow::isOnAllWorkspaces() const
{
    constexpr auto bit = static_cast<std::uint32_t>(CollectionBehavior::canJoinAllSpaces);
    return static_cast<std::uint32_t>(m_behavior) & bit;
}

std::vector<xcb_atom_t> X11PanelWindow::states() const
{
    std::vector<xcb_atom_t> states;
    for (auto const* const always : { "_NET_WM_STATE_SKIP_TASKBAR", "_NET_WM_STATE_SKIP_PAGER" })
        states.push_back(m_connection.atom(always));
    if (m_level == WindowLevel::floating)
        states.push_back(m_connection.atom(aboveState));
    if (isOnAllWorkspaces())
        states.push_back(m_connection.atom(stickyState));
    return states;
}

void X11PanelWindow::tellLevel()
{
    changeState(m_level == WindowLevel::floating, aboveState);
}

void X11PanelWindow::tellWorkspaces()
{
    changeState(isOnAllWorkspaces(), stickyState);
    auto const current = m_connection.number(m_connection.root(), "_NET_CURRENT_DESKTOP").value_or(0);
    tell(desktopProperty, { isOnAllWorkspaces() ? allDesktops : current, sourceIsAnApplication });
}

void X11PanelWindow::changeState(bool isOn, char const* state)
{
    tell(stateProperty, { isOn ? addState : removeState, m_connection.atom(state), 0, sourceIsAnApplication });
}

void X11PanelWindow::tell(char const* message, std::initializer_list<std::uint32_t> data)
{
    xcb_client_message_event_t event {};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = m_window;
    event.type = m_connection.atom(message);
    std::ranges::copy(data, event.data.data32);
    auto* const xcb = m_connection.handle();
    xcb_send_event(xcb, 0, m_connection.root(),
        XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
        reinterpret_cast<char const*>(&event));
    xcb_flush(xcb);
}

}
