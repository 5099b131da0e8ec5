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

QDBusMessage call(QDBusConnection const& bus, AssistiveClient::Object const& object, QString const& interface,
    char const* method, QVariantList const& arguments = {})
{
    auto message = QDBusMessage::createMethodCall(object.service, object.path, interface, QLatin1StringView(method));
    message.setArguments(arguments);
    return bus.call(message);
}

QRect rectangle(QVariantList const& numbers)
{
    if (numbers.size() < 4)
        return {};
    return { numbers[0].toInt(), numbers[1].toInt(), numbers[2].toInt(), numbers[3].toInt() };
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

QList<AssistiveClient::Object> AssistiveClient::children(Object const& object) const
{
    auto const reply = call(m_bus, object, interfaceOf("Accessible"), "GetChildren");
    QList<Object> children;
    if (reply.arguments().isEmpty())
        return children;
    auto const list = reply.arguments().constFirst().value<QDBusArgument>();
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

QVariant AssistiveClient::property(Object const& object, QString const& interface, QString const& name) const
{
    auto const reply = call(
        m_bus, object, QStringLiteral("org.freedesktop.DBus.Properties"), "Get", { interface, name });
    return reply.arguments().isEmpty() ? QVariant() : reply.arguments().constFirst().value<QDBusVariant>().variant();
}

QString AssistiveClient::name(Object const& object) const
{
    return property(object, interfaceOf("Accessible"), QStringLiteral("Name")).toString();
}

QString AssistiveClient::description(Object const& object) const
{
    return property(object, interfaceOf("Accessible"), QStringLiteral("Description")).toString();
}

QString AssistiveClient::text(Object const& object) const
{
    return call(m_bus, object, interfaceOf("Text"), "GetText", { 0, -1 }).arguments().value(0).toString();
}

QStringList AssistiveClient::interfaces(Object const& object) const
{
    return call(m_bus, object, interfaceOf("Accessible"), "GetInterfaces").arguments().value(0).toStringList();
}

QStringList AssistiveClient::actions(Object const& object) const
{
    QStringList names;
    auto const count = property(object, interfaceOf("Action"), QStringLiteral("NActions")).toInt();
    for (int index = 0; index < count; ++index)
        names.append(call(m_bus, object, interfaceOf("Action"), "GetName", { index }).arguments().value(0).toString());
    return names;
}

bool AssistiveClient::doAction(Object const& object, int index) const
{
    return call(m_bus, object, interfaceOf("Action"), "DoAction", { index }).arguments().value(0).toBool();
}

QRect AssistiveClient::extents(Object const& object) const
{
    auto const reply = call(m_bus, object, interfaceOf("Component"), "GetExtents", { 0U });
    if (reply.arguments().isEmpty())
        return {};
    auto const argument = reply.arguments().constFirst().value<QDBusArgument>();
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    argument.beginStructure();
    argument >> x >> y >> width >> height;
    argument.endStructure();
    return { x, y, width, height };
}

QRect AssistiveClient::characterExtents(Object const& object, int offset) const
{
    return rectangle(call(m_bus, object, interfaceOf("Text"), "GetCharacterExtents", { offset, 0U }).arguments());
}

}
