#include "linux/freedesktop/PortalShortcutSession.h"

#include "linux/freedesktop/BusApplicationInstance.h"

#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>

#include <algorithm>
#include <utility>

namespace Quillory {

namespace {

QString const portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
constexpr QLatin1StringView interfaceName { "GlobalShortcuts" };
QString const interface = QStringLiteral("org.freedesktop.portal.GlobalShortcuts");
QString const sessionInterface = QStringLiteral("org.freedesktop.portal.Session");

// Where the desktop does not know which program asks it keeps the keys under this name, and shows it in its settings.
QString const sessionToken = QStringLiteral("quillory");

void registerTypes()
{
    static bool const isDone = [] {
        qDBusRegisterMetaType<PortalShortcutSession::Shortcut>();
        qDBusRegisterMetaType<QList<PortalShortcutSession::Shortcut>>();
        return true;
    }();
    (void)isDone;
}

}

QDBusArgument& operator<<(QDBusArgument& argument, PortalShortcutSession::Shortcut const& shortcut)
{
    argument.beginStructure();
    argument << shortcut.id << shortcut.properties;
    argument.endStructure();
    return argument;
}

QDBusArgument const& operator>>(QDBusArgument const& argument, PortalShortcutSession::Shortcut& shortcut)
{
    argument.beginStructure();
    argument >> shortcut.id >> shortcut.properties;
    argument.endStructure();
    return argument; // NOLINT(bugprone-return-const-ref-from-parameter) as the toolkit asks for it
}

PortalShortcutSession::PortalShortcutSession(
    QDBusConnection bus, QString owner, QList<Shortcut> wanted, QObject* parent)
    : QObject(parent)
    , m_bus(std::move(bus))
    , m_owner(std::move(owner))
    , m_wanted(std::move(wanted))
{
    registerTypes();
    introduce();
}

// Newer portals take the program's name from here, older ones know no such thing. Either way it goes on.
void PortalShortcutSession::introduce()
{
    auto message = QDBusMessage::createMethodCall(
        m_owner, portalPath, QStringLiteral("org.freedesktop.host.portal.Registry"), QStringLiteral("Register"));
    message << BusApplicationInstance::name() << QVariantMap();
    auto* const answer = new QDBusPendingCallWatcher(m_bus.asyncCall(message), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, &PortalShortcutSession::create);
}

void PortalShortcutSession::create()
{
    if (m_stage == Stage::closing)
        return closeAtPortal();
    QVariantMap const options {
        { QStringLiteral("session_handle_token"), sessionToken },
        // Some desktops bind what they find here, and do nothing of the kind when they are asked to bind.
        { QStringLiteral("shortcuts"), QVariant::fromValue(m_wanted) },
    };
    ask(QStringLiteral("CreateSession"), {}, options, &PortalShortcutSession::created);
}

void PortalShortcutSession::created(PortalRequest::Answer const& answer)
{
    auto const handle = answer.results.value(QStringLiteral("session_handle"));
    auto const path = handle.canConvert<QDBusObjectPath>() ? handle.value<QDBusObjectPath>().path() : handle.toString();
    bool const isThere = answer.outcome == PortalRequest::Answer::Outcome::done && path.startsWith(u'/');
    if (isThere)
        m_handle = path;
    if (m_stage == Stage::closing)
        return closeAtPortal();
    if (!isThere)
        return refuse();
    m_stage = Stage::binding;
    listen();
    ask(QStringLiteral("ListShortcuts"), { QVariant::fromValue(QDBusObjectPath(m_handle)) }, {},
        &PortalShortcutSession::listed);
}

void PortalShortcutSession::listen()
{
    m_bus.connect(
        m_owner, portalPath, interface, QStringLiteral("Activated"), this, SLOT(shortcutActivated(QDBusMessage)));
    m_bus.connect(
        m_owner, portalPath, interface, QStringLiteral("Deactivated"), this, SLOT(shortcutDeactivated(QDBusMessage)));
    m_bus.connect(
        m_owner, portalPath, interface, QStringLiteral("ShortcutsChanged"), this, SLOT(shortcutsChanged(QDBusMessage)));
    m_bus.connect(m_owner, m_handle, sessionInterface, QStringLiteral("Closed"), this, SLOT(closedByDesktop()));
}

// Asking to bind may open a window of the desktop's: not for what is bound already.
void PortalShortcutSession::listed(PortalRequest::Answer const& answer)
{
    take(answer.results.value(QStringLiteral("shortcuts")));
    if (hasAll())
        finish(answer);
    else
        bindShortcuts();
}

void PortalShortcutSession::bindShortcuts()
{
    ask(QStringLiteral("BindShortcuts"),
        { QVariant::fromValue(QDBusObjectPath(m_handle)), QVariant::fromValue(m_wanted), QString() }, {},
        &PortalShortcutSession::boundShortcuts);
}

// Some desktops answer without a list, and tell of the keys only when they are asked.
void PortalShortcutSession::boundShortcuts(PortalRequest::Answer const& answer)
{
    if (answer.outcome != PortalRequest::Answer::Outcome::done)
        return refuse();
    take(answer.results.value(QStringLiteral("shortcuts")));
    if (hasAll())
        return finish(answer);
    ask(QStringLiteral("ListShortcuts"), { QVariant::fromValue(QDBusObjectPath(m_handle)) }, {},
        &PortalShortcutSession::finish);
}

void PortalShortcutSession::finish(PortalRequest::Answer const& answer)
{
    take(answer.results.value(QStringLiteral("shortcuts")));
    m_stage = Stage::open;
    Q_EMIT bound();
}

void PortalShortcutSession::refuse()
{
    m_stage = Stage::open;
    Q_EMIT refused();
}

void PortalShortcutSession::ask(
    QString const& method, QVariantList const& arguments, QVariantMap const& options, Answered answered)
{
    PortalRequest::start(m_bus, PortalRequest::Call { interfaceName, method, arguments, options }, this,
        [this, answered](PortalRequest::Answer const& answer) {
            bool const isAwaited = m_stage != Stage::closing || answered == &PortalShortcutSession::created;
            if (isAwaited)
                (this->*answered)(answer);
        });
}

// One whose path is not yet known is closed as soon as it is: the next one has the same name.
void PortalShortcutSession::close()
{
    auto const before = std::exchange(m_stage, Stage::closing);
    if (before == Stage::binding || before == Stage::open)
        closeAtPortal();
}

void PortalShortcutSession::closeAtPortal()
{
    // Where there is no session the portal is asked all the same: its end is heard of before the answer.
    auto const message = m_handle.isEmpty()
        ? QDBusMessage::createMethodCall(
              m_owner, portalPath, QStringLiteral("org.freedesktop.DBus.Peer"), QStringLiteral("Ping"))
        : QDBusMessage::createMethodCall(m_owner, m_handle, sessionInterface, QStringLiteral("Close"));
    auto* const answer = new QDBusPendingCallWatcher(m_bus.asyncCall(message), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, &PortalShortcutSession::ended);
}

bool PortalShortcutSession::isOurs(QDBusMessage const& signal) const
{
    return m_stage != Stage::closing && signal.arguments().value(0).value<QDBusObjectPath>().path() == m_handle;
}

void PortalShortcutSession::shortcutActivated(QDBusMessage const& signal)
{
    if (isOurs(signal))
        Q_EMIT activated(signal.arguments().value(1).toString());
}

void PortalShortcutSession::shortcutDeactivated(QDBusMessage const& signal)
{
    if (isOurs(signal))
        Q_EMIT deactivated(signal.arguments().value(1).toString());
}

void PortalShortcutSession::shortcutsChanged(QDBusMessage const& signal)
{
    if (!isOurs(signal))
        return;
    take(signal.arguments().value(1));
    Q_EMIT triggersChanged();
}

void PortalShortcutSession::closedByDesktop()
{
    if (m_stage != Stage::closing)
        Q_EMIT taken();
}

void PortalShortcutSession::take(QVariant const& shortcuts)
{
    for (auto const& shortcut : qdbus_cast<QList<Shortcut>>(shortcuts))
        m_triggers[shortcut.id] = shortcut.properties.value(QStringLiteral("trigger_description")).toString();
}

bool PortalShortcutSession::hasAll() const
{
    return std::ranges::all_of(m_wanted, [&](Shortcut const& each) { return m_triggers.contains(each.id); });
}

}
