#pragma once

#include "linux/freedesktop/PortalRequest.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QHash>
#include <QList>
#include <QObject>
#include <QVariantMap>

namespace Quillory {

// One session with the desktop's portal for global shortcuts, from the first question to its end. Every signal comes
// from the event loop. Main thread only.
class PortalShortcutSession final : public QObject {
    Q_OBJECT
public:
    // As it travels: the properties are a description and the keys, wanted or bound.
    struct Shortcut {
        QString id;
        QVariantMap properties;
    };

    // Asks the portal that has the unique name `owner` on that bus.
    PortalShortcutSession(QDBusConnection bus, QString owner, QList<Shortcut> wanted, QObject* parent);

    // Gives the shortcuts back. Only `ended` comes after that.
    void close();

    // The keys that are bound to the shortcut, as the desktop words them; empty without any.
    QString trigger(QString const& id) const { return m_triggers.value(id); }

Q_SIGNALS:
    void bound();
    void refused();
    void triggersChanged();
    void activated(QString const& id);
    void deactivated(QString const& id);
    void taken(); // the desktop has closed the session
    void ended(); // after `close`

private Q_SLOTS:
    void shortcutActivated(QDBusMessage const& signal);
    void shortcutDeactivated(QDBusMessage const& signal);
    void shortcutsChanged(QDBusMessage const& signal);
    void closedByDesktop();

private:
    enum class Stage { creating, binding, open, closing };
    using Answered = void (PortalShortcutSession::*)(PortalRequest::Answer const&);

    void introduce();
    void create();
    void created(PortalRequest::Answer const& answer);
    void listen();
    void listed(PortalRequest::Answer const& answer);
    void bindShortcuts();
    void boundShortcuts(PortalRequest::Answer const& answer);
    void finish(PortalRequest::Answer const& answer);
    void refuse();
    void ask(QString const& method, QVariantList const& arguments, QVariantMap const& options, Answered answered);
    void closeAtPortal();
    bool isOurs(QDBusMessage const& signal) const;
    void take(QVariant const& shortcuts);
    bool hasAll() const;

    QDBusConnection m_bus;
    QString const m_owner;
    QList<Shortcut> const m_wanted;
    Stage m_stage = Stage::creating;
    QString m_handle; // the session's path, once it is known
    QHash<QString, QString> m_triggers; // by id, of those that the desktop knows
};

QDBusArgument& operator<<(QDBusArgument& argument, PortalShortcutSession::Shortcut const& shortcut);
QDBusArgument const& operator>>(QDBusArgument const& argument, PortalShortcutSession::Shortcut& shortcut);

}
