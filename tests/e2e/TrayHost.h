#pragma once

#include "e2e/Desktop.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>

namespace Quillory {

// A watcher of status items and their host on the session bus, as panels have them, for as long as it lives. Its items
// are other processes' affair.
class TrayHost final : public QDBusVirtualObject {
public:
    TrayHost()
    {
        m_isThere = m_bus.registerVirtualObject(u"/StatusNotifierWatcher"_s, this)
            && m_bus.registerService(u"org.kde.StatusNotifierWatcher"_s);
        EXPECT_TRUE(m_isThere);
    }
    ~TrayHost() override { QDBusConnection::disconnectFromBus(m_bus.name()); }
    TrayHost(TrayHost const&) = delete;
    TrayHost& operator=(TrayHost const&) = delete;

    // The names of the items that are registered and still there, in order.
    QStringList names() const
    {
        QStringList names;
        for (auto const& item : m_items) {
            if (m_bus.interface()->isServiceRegistered(item))
                names.append(property(item, u"Id"_s).toString());
        }
        return names;
    }
    bool eventuallyHas(QStringList const& names) const
    {
        return Desktop::eventually([&] { return this->names() == names; });
    }

    QVariant of(QString const& name, QString const& asked) const { return property(item(name), asked); }
    QString toolTip(QString const& name) const
    {
        auto const value = of(name, u"ToolTip"_s).value<QDBusArgument>();
        QString icon, title;
        value.beginStructure();
        value >> icon;
        skipArray(value);
        value >> title;
        return title;
    }
    // Of the pictures of its face.
    QList<int> sides(QString const& name) const
    {
        auto const value = of(name, u"IconPixmap"_s).value<QDBusArgument>();
        QList<int> sides;
        for (value.beginArray(); !value.atEnd();) {
            int width = 0, height = 0;
            QByteArray bytes;
            value.beginStructure();
            value >> width >> height >> bytes;
            value.endStructure();
            EXPECT_EQ(bytes.size(), qsizetype { 4 } * width * height);
            EXPECT_TRUE(width == height && bytes.count('\0') < bytes.size()) << "something is drawn";
            sides.append(width);
        }
        return sides;
    }

    void click(QString const& name, QString const& method = u"Activate"_s) const
    {
        call(item(name), itemPath, u"org.kde.StatusNotifierItem"_s, method, { 3, 4 });
    }
    // The menu's rows as the layout has them now: its numbers and labels.
    QStringList layout(QString const& name) const
    {
        auto const reply = menuCall(name, u"GetLayout"_s, { 0, -1, QStringList() });
        auto const root = reply.arguments().value(1).value<QDBusArgument>();
        int number = 0;
        QVariantMap properties;
        QStringList rows;
        root.beginStructure();
        root >> number >> properties;
        for (root.beginArray(); !root.atEnd();) {
            QDBusVariant child;
            root >> child;
            auto const row = child.variant().value<QDBusArgument>();
            row.beginStructure();
            row >> number >> properties;
            rows.append(u"%1 %2"_s.arg(number).arg(properties.value(u"label"_s).toString()));
        }
        return rows;
    }
    // As hosts do before they show it. None of them has to tell that it went away.
    QStringList openMenu(QString const& name) const
    {
        EXPECT_EQ(menuCall(name, u"AboutToShow"_s, { 0 }).arguments(), QVariantList { true });
        choose(name, 0, u"opened"_s);
        return layout(name);
    }
    void choose(QString const& name, int number, QString const& event = u"clicked"_s) const
    {
        menuCall(name, u"Event"_s, { number, event, QVariant::fromValue(QDBusVariant(0)), 0U });
    }

    QString introspect(QString const&) const override { return {}; }
    bool handleMessage(QDBusMessage const& message, QDBusConnection const& connection) override
    {
        if (message.member() == u"RegisterStatusNotifierItem"_s)
            m_items.append(message.arguments().value(0).toString());
        return connection.send(message.createReply());
    }

private:
    inline static auto const itemPath = u"/StatusNotifierItem"_s;

    static QDBusConnection newConnection()
    {
        static int count = 0;
        return QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"tray-host-%1"_s.arg(++count));
    }
    static void skipArray(QDBusArgument const& argument)
    {
        argument.beginArray();
        argument.endArray();
    }

    QDBusMessage call(QString const& service, QString const& path, QString const& interface, QString const& method,
        QVariantList const& arguments) const
    {
        auto message = QDBusMessage::createMethodCall(service, path, interface, method);
        message.setArguments(arguments);
        return m_bus.call(message);
    }
    QDBusMessage menuCall(QString const& name, QString const& method, QVariantList const& arguments) const
    {
        auto const path = of(name, u"Menu"_s).value<QDBusObjectPath>().path();
        return call(item(name), path, u"com.canonical.dbusmenu"_s, method, arguments);
    }
    QVariant property(QString const& service, QString const& name) const
    {
        return call(service, itemPath, u"org.freedesktop.DBus.Properties"_s, u"Get"_s,
            { u"org.kde.StatusNotifierItem"_s, name })
            .arguments()
            .value(0)
            .value<QDBusVariant>()
            .variant();
    }
    QString item(QString const& name) const
    {
        auto const found = std::ranges::find_if(
            m_items, [&](auto const& item) { return property(item, u"Id"_s) == name; });
        return found == m_items.end() ? QString() : *found;
    }

    QDBusConnection m_bus = newConnection();
    bool m_isThere = false;
    QStringList m_items;
};

}
