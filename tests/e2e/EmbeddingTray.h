#pragma once

#include "e2e/Desktop.h"

namespace Quillory {

// A tray that takes other programs' windows (XEmbed), in the corner of the screen, for as long as it lives.
class EmbeddingTray {
public:
    static constexpr std::uint16_t side = 24;

    EmbeddingTray()
        : m_connection(std::move(X11Connection::open().value()))
        , m_window(xcb_generate_id(xcb()))
    {
        std::uint32_t const values[] { 1, XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY };
        xcb_create_window(xcb(), XCB_COPY_FROM_PARENT, m_window, m_connection->root(), 0, 0, 8 * side, side, 0,
            XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
        xcb_map_window(xcb(), m_window);
        m_events = m_connection->observeEvents([this](auto const& event) { handle(event); });
        auto const selection = m_connection->atom("_NET_SYSTEM_TRAY_S0");
        xcb_set_selection_owner(xcb(), m_window, selection, XCB_CURRENT_TIME);
        xcb_client_message_event_t news {};
        news.response_type = XCB_CLIENT_MESSAGE;
        news.format = 32;
        news.window = m_connection->root();
        news.type = m_connection->atom("MANAGER");
        news.data.data32[1] = selection;
        news.data.data32[2] = m_window;
        xcb_send_event(
            xcb(), 0, m_connection->root(), XCB_EVENT_MASK_STRUCTURE_NOTIFY, reinterpret_cast<char const*>(&news));
        xcb_flush(xcb());
    }

    bool eventuallyHas(std::size_t icons) const
    {
        return Desktop::eventually([&] { return m_icons.size() == icons; });
    }
    static QPoint middleOf(int icon) { return { icon * side + side / 2, side / 2 }; }

private:
    xcb_connection_t* xcb() const { return m_connection->handle(); }
    void handle(xcb_generic_event_t const& event)
    {
        constexpr std::uint8_t sentBit = 0x80;
        auto const type = static_cast<std::uint8_t>(event.response_type & ~sentBit);
        auto const& message = reinterpret_cast<xcb_client_message_event_t const&>(event);
        if (type == XCB_DESTROY_NOTIFY)
            std::erase(m_icons, reinterpret_cast<xcb_destroy_notify_event_t const&>(event).window);
        if (type != XCB_CLIENT_MESSAGE || message.type != m_connection->atom("_NET_SYSTEM_TRAY_OPCODE")
            || message.data.data32[1] != 0)
            return;
        auto const icon = message.data.data32[2];
        auto const place = static_cast<std::int16_t>(m_icons.size() * side);
        m_icons.push_back(icon);
        xcb_reparent_window(xcb(), icon, m_window, place, 0);
        std::uint32_t const size[] { side, side };
        xcb_configure_window(xcb(), icon, XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, size);
        xcb_map_window(xcb(), icon);
        xcb_flush(xcb());
    }

    std::unique_ptr<X11Connection> m_connection;
    xcb_window_t m_window;
    std::vector<xcb_window_t> m_icons;
    Registration m_events;
};

}
