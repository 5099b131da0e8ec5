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

#include <functional>
#include <memory>
#include <optional>
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

    // The connection should be of its own: newer portals learn the program's name from its first call.
    PortalHotKeys(QDBusConnection bus, Operations operations);

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

    void look();
    void portalChanged(QString const& newOwner);
    void start();
    void startAfresh();
    void forgetSession();
    void press(QString const& id);
    void release(QString const& id);
    void releaseAll();
    static void tell(std::vector<std::shared_ptr<HotKey>> const& hotKeys, Phase phase);
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
    QHash<QString, std::vector<std::shared_ptr<HotKey>>> m_down; // those that were told of the press, by the wish
    std::vector<std::shared_ptr<HotKey>> m_hotKeys;
    Observers<void()> m_changes;
};

}
