#include "tools/x11/DesktopView.h"

#include "linux/x11/ModifierMap.h"
#include "linux/x11/VirtualKeys.h"

#include <span>
#include <utility>

namespace Quillory {

namespace {

// The program's icons in a tray are windows as well.
constexpr int largestIcon = 128;

}

QRect DesktopView::Reader::readingArea() const
{
    constexpr int list = 200, bar = 60, lowerEdge = 40, scrollBar = 24;
    return frame.adjusted(list, bar, -scrollBar, -lowerEdge);
}

bool DesktopView::Reader::bearsASheetsTitle() const
{
    return !title.isEmpty() && title.compare(QStringLiteral("Quillory"), Qt::CaseInsensitive) != 0;
}

DesktopView::DesktopView(X11Connection& connection, QByteArray windowClass)
    : m_connection(connection)
    , m_windowClass(std::move(windowClass))
{
}

std::optional<DesktopView::Reader> DesktopView::reader() const
{
    // A window manager puts frames around windows, some of them two.
    constexpr int deepest = 3;
    std::optional<Reader> largest;
    collect(m_connection.root(), deepest, largest);
    return largest;
}

void DesktopView::collect(xcb_window_t parent, int depth, std::optional<Reader>& largest) const
{
    auto* const xcb = m_connection.handle();
    XcbOwned<xcb_query_tree_reply_t> const tree(xcb_query_tree_reply(xcb, xcb_query_tree(xcb, parent), nullptr));
    if (!tree)
        return;
    std::span const children(
        xcb_query_tree_children(tree.get()), static_cast<std::size_t>(xcb_query_tree_children_length(tree.get())));
    for (auto const child : children) {
        auto const windowClass = m_connection.property(child, "WM_CLASS").split('\0');
        bool const isWanted = windowClass.size() > 1 && windowClass[1].toLower() == m_windowClass;
        if (!isWanted) {
            if (depth > 1)
                collect(child, depth - 1, largest);
            continue;
        }
        auto const sizeCookie = xcb_get_geometry(xcb, child);
        auto const placeCookie = xcb_translate_coordinates(xcb, child, m_connection.root(), 0, 0);
        XcbOwned<xcb_get_geometry_reply_t> const size(xcb_get_geometry_reply(xcb, sizeCookie, nullptr));
        XcbOwned<xcb_translate_coordinates_reply_t> const place(
            xcb_translate_coordinates_reply(xcb, placeCookie, nullptr));
        if (!size || !place || !isOnScreen(child))
            continue;
        QRect const frame(place->dst_x, place->dst_y, size->width, size->height);
        if (frame.width() <= largestIcon && frame.height() <= largestIcon)
            continue;
        if (!largest || frame.width() * frame.height() > largest->frame.width() * largest->frame.height())
            largest = Reader { child, frame, QString::fromUtf8(m_connection.property(child, "_NET_WM_NAME")) };
    }
}

bool DesktopView::isOnScreen(xcb_window_t window) const
{
    auto* const xcb = m_connection.handle();
    XcbOwned<xcb_get_window_attributes_reply_t> const attributes(
        xcb_get_window_attributes_reply(xcb, xcb_get_window_attributes(xcb, window), nullptr));
    return attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE;
}

xcb_window_t DesktopView::frontWindow() const
{
    if (m_connection.number(m_connection.root(), "_NET_SUPPORTING_WM_CHECK"))
        return m_connection.number(m_connection.root(), "_NET_ACTIVE_WINDOW").value_or(0);
    auto* const xcb = m_connection.handle();
    XcbOwned<xcb_get_input_focus_reply_t> const focus(
        xcb_get_input_focus_reply(xcb, xcb_get_input_focus(xcb), nullptr));
    return focus ? focus->focus : 0;
}

std::optional<bool> DesktopView::isGrabbed(Shortcut const& shortcut) const
{
    auto* const xcb = m_connection.handle();
    auto const modifiers = ModifierMap::read(xcb).serverMask(shortcut.modifiers());
    auto const key = VirtualKeys::serverKeyCode(static_cast<std::uint16_t>(shortcut.carbonKeyCode));
    if (!modifiers || !key)
        return std::nullopt;
    xcb_grab_server(xcb);
    auto const probe = xcb_grab_key_checked(
        xcb, 0, m_connection.root(), *modifiers, *key, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    xcb_ungrab_key(xcb, *key, m_connection.root(), *modifiers);
    xcb_ungrab_server(xcb);
    XcbOwned<xcb_generic_error_t> const error(xcb_request_check(xcb, probe));
    return error && error->error_code == XCB_ACCESS;
}

}
