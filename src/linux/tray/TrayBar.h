#pragma once

#include "linux/tray/StatusFace.h"
#include "linux/tray/TrayIcon.h"
#include "linux/tray/TrayMenu.h"
#include "platform/StatusBar.h"

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QTimer>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace Quillory {

// The desktop's tray as a status bar: over D-Bus while somebody on the session bus watches for items, else embedded in a
// tray of the X server, while there is one. Both may come, go and take each other's place at any time. GUI thread only.
class TrayBar final : public QObject, public StatusBar {
    Q_OBJECT
public:
    struct Operations {
        // Whether there is a tray that takes windows; `trayChanged` is to be called whenever that changes.
        std::function<bool()> hasEmbeddingTray;
        // The user has clicked, or chosen, at that server time; absent for now. Called before the item's target.
        std::function<void(std::optional<std::uint32_t>)> noteUserTime;
        std::function<void(QString const&)> log; // one sentence for the user
    };

    // Each costs a connection or a window. No panel has room for more, and neither bus nor process should run out.
    static constexpr std::size_t mostIcons = 128;

    TrayBar(QDBusConnection const& sessionBus, Operations operations);
    ~TrayBar() override;
    TrayBar(TrayBar const&) = delete;
    TrayBar& operator=(TrayBar const&) = delete;

    std::unique_ptr<StatusItem> statusItem(StatusItem::Target target) override;

    // Whether items can be seen.
    bool isPresent() const { return m_tray != Tray::none; }
    void trayChanged();

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    class Item;
    enum class Tray { none, notifier, embedding };

    Tray trayOfDesktop() const;
    void watcherChanged(QString const& owner);
    void enter(Tray tray);
    void settle();
    void fillLater();
    void fill();
    bool give(Item& item);
    std::unique_ptr<TrayIcon> makeIcon(Item& item);
    void popUpMenu(Item const& item);
    void forget(Item& item);

    Operations m_operations;
    QDBusConnection m_bus;
    QDBusServiceWatcher m_watchers;
    bool m_hasWatcher = false;
    Tray m_tray = Tray::none;
    StatusFace::Style m_style;
    std::vector<Item*> m_items; // in the order in which they were made
    std::size_t m_mostIcons;
    bool m_isFull = false; // and the user was told
    QTimer m_settling;
    QTimer m_turn;
    TrayMenu m_menu;
};

}
