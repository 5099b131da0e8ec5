#pragma once

#include "linux/x11/X11Connection.h"
#include "platform/KeyboardLayout.h"
#include "platform/Observers.h"

#include <QTimer>

#include <memory>

#include <xkbcommon/xkbcommon.h>

namespace Quillory {

// The X server's keyboard map, read when it is first asked for and again when it was asked for since the last change.
class XkbKeyboardLayout final : public KeyboardLayout {
public:
    // The connection outlives it.
    explicit XkbKeyboardLayout(X11Connection& connection);
    ~XkbKeyboardLayout() override;

    std::optional<QString> character(std::uint16_t keyCode) const override;
    std::optional<std::uint16_t> keyCode(QString const& symbolName) const override;
    std::optional<QString> symbolName(std::uint16_t keyCode) const override;

    // Changes that follow each other quickly are told once.
    Registration observeChanges(std::function<void()> changed) override;

private:
    struct Map {
        std::shared_ptr<xkb_keymap> keymap;
        xkb_layout_index_t layout = 0;
    };

    void listen() const;
    void handle(xcb_generic_event_t const& event);
    Map const& map() const;
    Map read() const;

    X11Connection& m_connection;
    mutable std::uint8_t m_firstEvent = 0; // of the server's keyboard extension; 0 before it was asked for
    mutable std::optional<Map> m_map;
    Observers<void()> m_changes;
    QTimer m_tell;
    Registration m_events;
};

}
