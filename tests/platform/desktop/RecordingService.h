#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>

#include <functional>
#include <optional>

namespace Quillory {

// A service on the session bus that answers whatever is called as the test says. It stands on a connection of its own,
// so that every call and answer goes over the bus.
class RecordingService final : public QDBusVirtualObject {
public:
    // Gives the arguments of the reply; absent for an error.
    using Answer = std::function<std::optional<QVariantList>(QDBusMessage const& call, QDBusConnection& bus)>;

    RecordingService(QString const& name, QString const& path, Answer answer)
        : m_bus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, name))
        , m_name(name)
        , m_answer(std::move(answer))
    {
        isRegistered = m_bus.registerVirtualObject(path, this, QDBusConnection::SubPath) && m_bus.registerService(name);
    }
    ~RecordingService() override { QDBusConnection::disconnectFromBus(m_name); }

    QString introspect(QString const&) const override { return {}; }
    bool handleMessage(QDBusMessage const& message, QDBusConnection const& connection) override
    {
        auto bus = connection;
        auto const answer = m_answer(message, bus);
        return bus.send(answer ? message.createReply(*answer) : message.createErrorReply(QDBusError::Failed, m_name));
    }

    bool isRegistered = false;

private:
    QDBusConnection m_bus;
    QString m_name;
    Answer m_answer;
};

}
