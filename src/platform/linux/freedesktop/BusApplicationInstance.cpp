#include "platform/linux/freedesktop/BusApplicationInstance.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>

#include <chrono>
#include <utility>

namespace Quillory {

namespace {

constexpr std::chrono::milliseconds answerTime { 5000 };

QString objectPath()
{
    return QLatin1Char('/') + BusApplicationInstance::name().replace(QLatin1Char('.'), QLatin1Char('/'));
}

}

BusApplicationInstance::Start BusApplicationInstance::Start::ofThisProcess()
{
    bool const isByBus = qEnvironmentVariableIsSet("DBUS_STARTER_BUS_TYPE");
    // What is started from here is none of the bus's.
    qunsetenv("DBUS_STARTER_BUS_TYPE");
    return { qEnvironmentVariable("DESKTOP_STARTUP_ID", qEnvironmentVariable("XDG_ACTIVATION_TOKEN")),
        isByBus ? By::bus : By::user };
}

BusApplicationInstance::BusApplicationInstance(QDBusConnection const& sessionBus, Start start)
    : m_bus(sessionBus)
    , m_start(std::move(start))
    , m_interface([this](Request const& request) { receive(request); })
{
}

BusApplicationInstance::~BusApplicationInstance()
{
    if (!m_bus.isConnected())
        return;
    m_bus.unregisterService(name());
    m_bus.unregisterObject(objectPath());
}

ApplicationInstance::Role BusApplicationInstance::start(Wish wish)
{
    // The one that owned the name may end while it is asked; then the name is free.
    constexpr int tries = 3;
    for (int attempt = 0; attempt < tries; ++attempt) {
        auto const claimed = claim();
        if (claimed == Claim::ownedByAnother && handOver(wish))
            return Role::handedOver;
        if (claimed == Claim::ownedByAnother)
            continue;
        // Nothing is shown yet, unless the program opens by itself at its start.
        if (wish == Wish::toggle)
            receive({ .wish = Wish::open, .userTime = ApplicationInterface::userTime(m_start.id) });
        return claimed == Claim::owned ? Role::first : Role::alone;
    }
    return Role::alone;
}

// The object stands before the name is had: who waits for the name calls at once.
BusApplicationInstance::Claim BusApplicationInstance::claim()
{
    if (!m_bus.isConnected() || !m_bus.registerObject(objectPath(), &m_interface, QDBusConnection::ExportAllSlots))
        return Claim::failed;
    auto const reply = m_bus.interface()->registerService(
        name(), QDBusConnectionInterface::DontQueueService, QDBusConnectionInterface::DontAllowReplacement);
    if (reply.isValid() && reply.value() == QDBusConnectionInterface::ServiceRegistered)
        return Claim::owned;
    m_bus.unregisterObject(objectPath());
    return reply.isValid() ? Claim::ownedByAnother : Claim::failed;
}

// A process that does not answer in time has the request still, and serves it when it can.
bool BusApplicationInstance::handOver(Wish wish)
{
    if (wish == Wish::none)
        return true;
    bool const isToggle = wish == Wish::toggle;
    auto call = QDBusMessage::createMethodCall(name(), objectPath(), QStringLiteral("org.freedesktop.Application"),
        isToggle ? QStringLiteral("ActivateAction") : QStringLiteral("Activate"));
    if (isToggle)
        call << QStringLiteral("toggle") << QVariantList();
    QVariantMap platformData;
    if (!m_start.id.isEmpty())
        platformData.insert(QStringLiteral("desktop-startup-id"), m_start.id);
    call << platformData;
    call.setAutoStartService(false);
    auto const reply = m_bus.call(call, QDBus::Block, static_cast<int>(answerTime.count()));
    return reply.type() == QDBusMessage::ReplyMessage || QDBusError(reply).type() == QDBusError::NoReply;
}

// The first request of a process that the bus began is why it runs. By then the reader may have opened by itself.
void BusApplicationInstance::receive(Request request)
{
    bool const isWhyItRuns = std::exchange(m_start.by, Start::By::user) == Start::By::bus;
    if (isWhyItRuns && request.wish == Wish::toggle)
        request.wish = Wish::open;
    if (m_requested)
        m_requested(request);
    else
        m_kept.push_back(request);
}

Registration BusApplicationInstance::observeRequests(std::function<void(Request const&)> requested)
{
    m_requested = std::move(requested);
    for (auto const& request : std::exchange(m_kept, {}))
        m_requested(request);
    return Registration([this] { m_requested = nullptr; });
}

}
