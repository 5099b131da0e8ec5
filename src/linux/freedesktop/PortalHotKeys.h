#pragma once

#include "linux/freedesktop/PortalShortcutSession.h"
#include "platform/DesktopHotKeys.h"
#include "platform/HotKeys.h"
#include "platform/Observers.h"

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QHash>
#include <QObject>
#include <QPointer>

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

class QDBusPendingCallWatcher;

namespace Quillory {

// Hot keys that the desktop's portal binds. Whether there is a portal that can is asked without waiting, and again
// whenever another one takes the portal's name. A registered hot key stands for the wish with the same keys: it comes
// and goes without a word to the portal.
class PortalHotKeys final : public QObject, public HotKeys, public DesktopHotKeys {
    Q_OBJECT
public:
    struct Operations {
        // The symbol that the key with this virtual key code gives, as X11 names it.
        std::function<std::optional<QString>(std::uint16_t)> symbolName;
        // Called before the handlers of each press: the user has asked for what comes of it right now.
        std::function<void()> noteUserTime;
    };

    // Some desktops tell of each repeat of a held key as a release that is followed at once by a press.
    struct Repeats {
        std::chrono::milliseconds earliest { 100 }; // after the press; what comes before is a release
        std::chrono::milliseconds longestGap { 15 }; // seen: up to 0.6 ms
    };

    // The connection should be of its own: newer portals learn the program's name from its first call.
    PortalHotKeys(QDBusConnection bus, Operations operations, Repeats repeats);
    PortalHotKeys(QDBusConnection bus, Operations operations)
        : PortalHotKeys(std::move(bus), std::move(operations), Repeats())
    {
    }

    // Never refused.
    std::expected<Registration, Refusal> registerHotKey(
        std::uint16_t keyCode, ModifierFlags modifiers, Handler handler) override;
    std::expected<void, Refusal> probe(std::uint16_t, ModifierFlags) override { return {}; }
    // Nothing is held.
    void yieldKeyboard() override { }

    void bind(QList<Wish> wishes) override;
    void askAgain() override;
    State state() const override { return m_state; }
    QString trigger(QString const& id) const override;
    Registration observeChanges(std::function<void()> changed) override;

private:
    struct HotKey {
        std::uint16_t keyCode;
        ModifierFlags modifiers;
        Handler handler;
        bool isRegistered = true;
    };

    using Listeners = std::vector<std::shared_ptr<HotKey>>;

    struct Press {
        Listeners listeners; // those that were told of it
        std::chrono::steady_clock::time_point since;
        std::uint64_t lastTold = 0; // which message of the desktop's was the last about it
    };

    void look();
    void portalChanged(QString const& newOwner);
    void start();
    void startAfresh();
    void forgetSession();
    void press(QString const& id);
    void release(QString const& id);
    void letGo(QString const& id);
    void releaseAll();
    static void tell(Listeners const& hotKeys, Phase phase);
    void setState(State state);
    PortalShortcutSession::Shortcut shortcutOf(Wish const& wish) const;

    QDBusConnection m_bus;
    Operations m_operations;
    QDBusServiceWatcher m_portals;
    QPointer<QDBusPendingCallWatcher> m_question; // whether there is such a portal
    QString m_owner; // unique name of the portal, once it is known to have the interface
    QList<Wish> m_wishes;
    State m_state = State::asking;
    QPointer<PortalShortcutSession> m_session;
    State m_afterSession = State::asking; // what follows once the session has ended
    Repeats const m_repeats;
    QHash<QString, Press> m_presses; // of the keys that are down, by the wish
    std::uint64_t m_lastTold = 0;
    Listeners m_hotKeys;
    Observers<void()> m_changes;
};

}
