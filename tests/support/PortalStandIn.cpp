// Another process that serves the desktop portal's global shortcuts and has no keyboard:
//   quillory-test-portal [MODE...]
//     keeps     binds what a session is created with, as some desktops do    silent   tells of keys only when asked
//     waits     for what the user never says
//     refuses   the user says no                                            denies   makes no sessions
//     lacks     another portal's interfaces alone
// It writes "serving", and a line for each call. Each line that it reads is one of:
//   press ID, release ID, repeat ID, rebind ID KEYS, close, drop, return, agree
#include "support/BusService.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QFile>
#include <QSocketNotifier>
#include <QTimer>

#include <iostream>

namespace {

using namespace Qt::StringLiterals;

QString const portal = u"org.freedesktop.portal.Desktop"_s, portalPath = u"/org/freedesktop/portal/desktop"_s;
QString const interface = u"org.freedesktop.portal.GlobalShortcuts"_s;

struct Shortcut {
    QString id;
    QVariantMap properties;
};
QDBusArgument& operator<<(QDBusArgument& to, Shortcut const& shortcut)
{
    to.beginStructure();
    to << shortcut.id << shortcut.properties;
    to.endStructure();
    return to;
}
QDBusArgument const& operator>>(QDBusArgument const& from, Shortcut& shortcut)
{
    from.beginStructure();
    from >> shortcut.id >> shortcut.properties;
    from.endStructure();
    return from;
}

class StandIn {
public:
    explicit StandIn(QStringList modes)
        : m_modes(std::move(modes))
    {
    }

    // Of the reply; the answer that the user gives follows it, for the caller alone.
    std::optional<QVariantList> answer(QDBusMessage const& call)
    {
        if (call.member() == u"Get")
            return m_modes.contains(u"lacks"_s) ? std::nullopt
                                                : std::optional(QVariantList { QVariant::fromValue(QDBusVariant(1U)) });
        std::cout << (call.member() + wanted(call)).toStdString() << std::endl;
        if (call.member() == u"Close") {
            m_session.clear();
            return QVariantList();
        }
        auto const isCreation = call.member() == u"CreateSession";
        auto const session = call.arguments().value(0).value<QDBusObjectPath>().path();
        // Sessions belong to who made them, and there is one of a name at a time.
        bool const isAllowed = isCreation ? m_session.isEmpty() && !m_modes.contains(u"denies"_s)
                                          : session == m_session && call.service() == m_caller;
        if (call.interface() != interface || !isAllowed)
            return std::nullopt;
        auto const options = qdbus_cast<QVariantMap>(call.arguments().last());
        auto const sender = call.service().mid(1).replace(u'.', u'_');
        auto const path = u"%1/request/%2/%3"_s.arg(portalPath, sender, options[u"handle_token"_s].toString());
        QVariantMap results;
        bool const isRefusal = call.member() == u"BindShortcuts" && m_modes.contains(u"refuses"_s);
        if (isCreation) {
            m_caller = call.service();
            m_session = u"%1/session/%2/%3"_s.arg(portalPath, sender, options[u"session_handle_token"_s].toString());
            results[u"session_handle"_s] = m_session;
            m_bound = m_modes.contains(u"keeps"_s) ? list(options[u"shortcuts"_s]) : QList<Shortcut>();
        } else {
            if (call.member() == u"BindShortcuts" && !isRefusal)
                m_bound = list(call.arguments().at(1));
            bool const isTold = call.member() == u"ListShortcuts" || !m_modes.contains(u"silent"_s);
            results[u"shortcuts"_s] = QVariant::fromValue(isTold ? bound() : QList<Shortcut>());
        }
        auto response = QDBusMessage::createTargetedSignal(
            m_caller, path, u"org.freedesktop.portal.Request"_s, u"Response"_s);
        response << uint(isRefusal) << (isRefusal ? QVariantMap() : results);
        if (call.member() != u"BindShortcuts" || !m_modes.contains(u"waits"_s))
            QTimer::singleShot(0, [this, response] { m_service->send(response); });
        return QVariantList { QVariant::fromValue(QDBusObjectPath(path)) };
    }

    void serve()
    {
        auto const bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"portal-%1"_s.arg(++m_count));
        m_service.emplace(bus, portal, portalPath, [this](auto const& call, auto&) { return answer(call); });
    }

    void obey(QString const& line)
    {
        auto const words = line.split(u' ');
        auto const id = words.value(1);
        if (words[0] == u"press" || words[0] == u"release")
            signal(words[0] == u"press" ? u"Activated"_s : u"Deactivated"_s, { id, qulonglong(0), QVariantMap() });
        else if (words[0] == u"repeat") {
            obey(u"release "_s + id);
            obey(u"press "_s + id);
        } else if (words[0] == u"rebind")
            signal(u"ShortcutsChanged"_s,
                { QVariant::fromValue(QList { Shortcut { id, { { u"trigger_description"_s, words.value(2) } } } }) });
        else if (words[0] == u"close")
            m_service->send(QDBusMessage::createSignal(
                std::exchange(m_session, {}), u"org.freedesktop.portal.Session"_s, u"Closed"_s));
        else if (words[0] == u"drop") {
            m_service.reset();
            m_session.clear();
        } else if (words[0] == u"return")
            serve();
        else if (words[0] == u"agree")
            m_modes.removeAll(u"refuses"_s);
    }

private:
    static QList<Shortcut> list(QVariant const& shortcuts) { return qdbus_cast<QList<Shortcut>>(shortcuts); }

    static QString wanted(QDBusMessage const& call)
    {
        if (call.member() == u"Register")
            return u' ' + call.arguments().value(0).toString();
        QString text;
        for (auto const& shortcut :
            call.member() == u"BindShortcuts" ? list(call.arguments().at(1)) : QList<Shortcut>())
            text += u" %1=%2"_s.arg(shortcut.id, shortcut.properties[u"preferred_trigger"_s].toString());
        return text;
    }

    // Under keys of the desktop's own wording.
    QList<Shortcut> bound() const
    {
        QList<Shortcut> all;
        for (auto const& shortcut : m_bound)
            all.append({ shortcut.id,
                { { u"trigger_description"_s,
                    shortcut.properties[u"preferred_trigger"_s].toString().toLower().replace(u'+', u'-') } } });
        return all;
    }

    void signal(QString const& name, QVariantList const& arguments)
    {
        // Of another program's session first, which is nobody's business here.
        for (auto const& session : { portalPath + u"/session/1_999/quillory"_s, m_session }) {
            auto message = QDBusMessage::createSignal(portalPath, interface, name);
            message.setArguments(QVariantList { QVariant::fromValue(QDBusObjectPath(session)) } + arguments);
            if (!session.isEmpty())
                m_service->send(message);
        }
    }

    QStringList m_modes;
    int m_count = 0;
    QString m_session;
    QString m_caller;
    QList<Shortcut> m_bound;
    std::optional<Quillory::BusService> m_service;
};

}

int main(int argc, char** argv)
{
    QCoreApplication const application(argc, argv);
    qDBusRegisterMetaType<Shortcut>();
    qDBusRegisterMetaType<QList<Shortcut>>();
    StandIn standIn(QCoreApplication::arguments().mid(1));
    standIn.serve();
    QFile commands;
    if (!commands.open(0, QIODevice::ReadOnly | QIODevice::Unbuffered))
        return EXIT_FAILURE;
    QSocketNotifier const input(0, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, [&] {
        auto const line = commands.readLine();
        if (line.isEmpty())
            return QCoreApplication::exit();
        standIn.obey(QString::fromUtf8(line).trimmed());
    });
    std::cout << "serving" << std::endl;
    return QCoreApplication::exec();
}
