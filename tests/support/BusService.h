#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>

#include <functional>
#include <optional>

namespace Quillory {

// A service on a bus that answers whatever is called below its path as the test says. Its connection should be its own,
// so that every call and answer goes over the bus; it ends with the service.
class BusService final : public QDBusVirtualObject {
public:
    // Gives the arguments of the reply; absent for an error.
    using Answer = std::function<std::optional<QVariantList>(QDBusMessage const& call, QDBusConnection& bus)>;

    BusService(QDBusConnection const& bus, QString const& name, QString const& path, Answer answer)
        : m_bus(bus)
        , m_answer(std::move(answer))
    {
        isRegistered = m_bus.registerVirtualObject(path, this, QDBusConnection::SubPath) && m_bus.registerService(name);
    }
    ~BusService() override { QDBusConnection::disconnectFromBus(m_bus.name()); }

    QString introspect(QString const&) const override { return {}; }
    bool handleMessage(QDBusMessage const& message, QDBusConnection const&) override
    {
        auto const answer = m_answer(message, m_bus);
        return m_bus.send(answer ? message.createReply(*answer) : message.createErrorReply(QDBusError::Failed, {}));
    }

    bool send(QDBusMessage const& message) const { return m_bus.send(message); }

    bool isRegistered = false;

private:
    QDBusConnection m_bus;
    Answer m_answer;
};

}
