#pragma once

#include "support/Test.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusReply>
#include <QRect>

#include <optional>

namespace Quillory {

// An assistive program on the accessibility bus of this session, as screen readers are.
class AssistiveClient {
public:
    // An object of another program.
    struct Object {
        QString service;
        QString path;
    };

    ~AssistiveClient() { QDBusConnection::disconnectFromBus(connectionName); }

    // The first object of any program whose name is this one.
    std::optional<Object> find(QString const& name) const
    {
        return find({ u"org.a11y.atspi.Registry"_s, u"/org/a11y/atspi/accessible/root"_s }, name, 12);
    }

    QList<Object> children(Object const& object) const
    {
        QList<Object> children;
        auto const list = ask(object, "Accessible", "GetChildren").value(0).value<QDBusArgument>();
        if (list.currentType() != QDBusArgument::ArrayType)
            return children;
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
    QString name(Object const& object) const { return property(object, "Accessible", "Name").toString(); }
    QString description(Object const& object) const { return property(object, "Accessible", "Description").toString(); }
    QString text(Object const& object) const { return ask(object, "Text", "GetText", { 0, -1 }).value(0).toString(); }
    QStringList interfaces(Object const& object) const
    {
        return ask(object, "Accessible", "GetInterfaces").value(0).toStringList();
    }
    QStringList actions(Object const& object) const
    {
        QStringList names;
        auto const count = property(object, "Action", "NActions").toInt();
        for (int index = 0; index < count; ++index)
            names.append(ask(object, "Action", "GetName", { index }).value(0).toString());
        return names;
    }

    bool hasKeyboard(Object const& object) const { return isIn(object, 12); }
    bool isShowing(Object const& object) const { return isIn(object, 25); }
    bool isActive(Object const& window) const { return isIn(window, 1); }

    // Its first action.
    void press(Object const& object) const { ask(object, "Action", "DoAction", { 0 }); }

    // The middle of the object, or of one of its characters, on the screen.
    QPoint middle(Object const& object) const
    {
        auto const answer = ask(object, "Component", "GetExtents", { 0U }).value(0).value<QDBusArgument>();
        int x = 0, y = 0, width = 0, height = 0;
        answer.beginStructure();
        answer >> x >> y >> width >> height;
        answer.endStructure();
        return QRect(x, y, width, height).center();
    }
    QPoint middle(Object const& object, int offset) const
    {
        auto const edges = ask(object, "Text", "GetCharacterExtents", { offset, 0U });
        return QRect(edges.value(0).toInt(), edges.value(1).toInt(), edges.value(2).toInt(), edges.value(3).toInt())
            .center();
    }

    // The slot takes a QDBusMessage for every such event of any program.
    bool hear(char const* event, QObject* listener, char const* slot)
    {
        return m_bus.connect({}, {}, interfaceOf("Event.Object"), QLatin1StringView(event), listener, slot);
    }

private:
    static inline QString const connectionName = u"assistive client"_s;

    // By the number of a state.
    bool isIn(Object const& object, uint state) const
    {
        auto const states = qdbus_cast<QList<uint>>(ask(object, "Accessible", "GetState").value(0));
        return !states.isEmpty() && (states.first() & (1U << state)) != 0;
    }

    static QDBusConnection connected()
    {
        auto const ask = QDBusMessage::createMethodCall(
            u"org.a11y.Bus"_s, u"/org/a11y/bus"_s, u"org.a11y.Bus"_s, u"GetAddress"_s);
        QDBusReply<QString> const address = QDBusConnection::sessionBus().call(ask);
        return QDBusConnection::connectToBus(address.value(), connectionName);
    }
    static QString interfaceOf(char const* name) { return u"org.a11y.atspi."_s + QLatin1StringView(name); }

    // What an interface of the bus, by its last name, answers.
    QVariantList ask(
        Object const& object, char const* interface, char const* method, QVariantList const& arguments = {}) const
    {
        auto message = QDBusMessage::createMethodCall(
            object.service, object.path, interfaceOf(interface), QLatin1StringView(method));
        message.setArguments(arguments);
        return m_bus.call(message).arguments();
    }
    QVariant property(Object const& object, char const* interface, char const* name) const
    {
        auto message = QDBusMessage::createMethodCall(
            object.service, object.path, u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
        message.setArguments({ interfaceOf(interface), QLatin1StringView(name) });
        return m_bus.call(message).arguments().value(0).value<QDBusVariant>().variant();
    }
    std::optional<Object> find(Object const& below, QString const& wanted, int mostDepth) const
    {
        if (mostDepth < 0)
            return {};
        for (auto const& child : children(below)) {
            if (name(child) == wanted)
                return child;
            if (auto const found = find(child, wanted, mostDepth - 1))
                return found;
        }
        return {};
    }

    QDBusConnection m_bus = connected();
};

}
