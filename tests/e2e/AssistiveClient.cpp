#include "e2e/AssistiveClient.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusReply>

namespace Quillory {

namespace {

QString const connectionName = QStringLiteral("assistive client");
constexpr int mostDepth = 12;

QString interfaceOf(char const* name)
{
    return QStringLiteral("org.a11y.atspi.") + QLatin1StringView(name);
}

QDBusConnection connected()
{
    auto const ask = QDBusMessage::createMethodCall(QStringLiteral("org.a11y.Bus"), QStringLiteral("/org/a11y/bus"),
        QStringLiteral("org.a11y.Bus"), QStringLiteral("GetAddress"));
    QDBusReply<QString> const address = QDBusConnection::sessionBus().call(ask);
    return QDBusConnection::connectToBus(address.value(), connectionName);
}

}

AssistiveClient::AssistiveClient()
    : m_bus(connected())
{
}

AssistiveClient::~AssistiveClient()
{
    QDBusConnection::disconnectFromBus(connectionName);
}

QVariantList AssistiveClient::ask(
    Object const& object, char const* interface, char const* method, QVariantList const& arguments) const
{
    auto message = QDBusMessage::createMethodCall(
        object.service, object.path, interfaceOf(interface), QLatin1StringView(method));
    message.setArguments(arguments);
    return m_bus.call(message).arguments();
}

QMap<QString, QString> AssistiveClient::attributes(Object const& object, int offset, int& start, int& end) const
{
    auto const answer = ask(object, "Text", "GetAttributes", { offset });
    start = answer.value(1).toInt();
    end = answer.value(2).toInt();
    QMap<QString, QString> attributes;
    answer.value(0).value<QDBusArgument>() >> attributes;
    return attributes;
}

bool AssistiveClient::hear(char const* event, QObject* listener, char const* slot)
{
    return m_bus.connect(QString(), QString(), interfaceOf("Event.Object"), QLatin1StringView(event), listener, slot);
}

QList<AssistiveClient::Object> AssistiveClient::children(Object const& object) const
{
    auto const answer = ask(object, "Accessible", "GetChildren");
    QList<Object> children;
    if (answer.isEmpty())
        return children;
    auto const list = answer.constFirst().value<QDBusArgument>();
    list.beginArray();
    while (!list.atEnd()) {
        Object child;
        QDBusObjectPath path;
        list.beginStructure();
        list >> child.service >> path;
        list.endStructure();
        child.path = path.path();
        children.append(child);
    }
    list.endArray();
    return children;
}

std::optional<AssistiveClient::Object> AssistiveClient::find(QString const& name) const
{
    return find(
        { QStringLiteral("org.a11y.atspi.Registry"), QStringLiteral("/org/a11y/atspi/accessible/root") }, name, 0);
}

std::optional<AssistiveClient::Object> AssistiveClient::find(
    Object const& below, QString const& wanted, int depth) const
{
    if (depth > mostDepth)
        return {};
    for (auto const& child : children(below)) {
        if (name(child) == wanted)
            return child;
        if (auto const found = find(child, wanted, depth + 1))
            return found;
    }
    return {};
}

QVariant AssistiveClient::property(Object const& object, char const* interface, char const* name) const
{
    auto message = QDBusMessage::createMethodCall(
        object.service, object.path, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    message.setArguments({ interfaceOf(interface), QLatin1StringView(name) });
    return m_bus.call(message).arguments().value(0).value<QDBusVariant>().variant();
}

QString AssistiveClient::name(Object const& object) const
{
    return property(object, "Accessible", "Name").toString();
}

QString AssistiveClient::description(Object const& object) const
{
    return property(object, "Accessible", "Description").toString();
}

QString AssistiveClient::text(Object const& object, int start, int end) const
{
    return ask(object, "Text", "GetText", { start, end }).value(0).toString();
}

QStringList AssistiveClient::interfaces(Object const& object) const
{
    return ask(object, "Accessible", "GetInterfaces").value(0).toStringList();
}

QStringList AssistiveClient::actions(Object const& object) const
{
    QStringList names;
    auto const count = property(object, "Action", "NActions").toInt();
    for (int index = 0; index < count; ++index)
        names.append(ask(object, "Action", "GetName", { index }).value(0).toString());
    return names;
}

bool AssistiveClient::doAction(Object const& object, int index) const
{
    return ask(object, "Action", "DoAction", { index }).value(0).toBool();
}

QRect AssistiveClient::extents(Object const& object) const
{
    auto const answer = ask(object, "Component", "GetExtents", { 0U });
    if (answer.isEmpty())
        return {};
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    auto const argument = answer.constFirst().value<QDBusArgument>();
    argument.beginStructure();
    argument >> x >> y >> width >> height;
    argument.endStructure();
    return { x, y, width, height };
}

QRect AssistiveClient::characterExtents(Object const& object, int offset) const
{
    auto const numbers = ask(object, "Text", "GetCharacterExtents", { offset, 0U });
    return { numbers.value(0).toInt(), numbers.value(1).toInt(), numbers.value(2).toInt(), numbers.value(3).toInt() };
}

}
