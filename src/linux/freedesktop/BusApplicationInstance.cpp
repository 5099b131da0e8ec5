#include "linux/freedesktop/BusApplicationInstance.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>

#include <utility>

namespace Quillory {

namespace {

QString objectPath()
{
    return QLatin1Char('/') + BusApplicationInstance::name().replace(QLatin1Char('.'), QLatin1Char('/'));
}

}

BusApplicationInstance::Start BusApplicationInstance::Start::ofThisProcess()
{
    bool const isByBus = qEnvironmentVariableIsSet("DBUS_STARTER_BUS_TYPE");
    // Programs that we start must not take themselves for started by the bus.
    qunsetenv("DBUS_STARTER_BUS_TYPE");
    return { qEnvironmentVariable("DESKTOP_STARTUP_ID", qEnvironmentVariable("XDG_ACTIVATION_TOKEN")),
        isByBus ? By::bus : By::user };
}

BusApplicationInstance::BusApplicationInstance(
    QDBusConnection sessionBus, Start start, std::chrono::milliseconds answerTime)
    : m_bus(std::move(sessionBus))
    , m_start(std::move(start))
    , m_answerTime(answerTime)
    , m_interface([this](Request const& request) { receive(request); })
{
}

BusApplicationInstance::~BusApplicationInstance()
{
    leave();
}

void BusApplicationInstance::leave()
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
    auto answer = Answer::ownerGone;
    for (int attempt = 0; attempt < tries; ++attempt) {
        auto const claimed = claim();
        if (claimed == Claim::ownedByAnother) {
            if (answer == Answer::none)
                break;
            answer = handOver(wish);
            if (answer == Answer::taken)
                return Role::handedOver;
            continue;
        }
        // Nothing is shown yet, unless the program opens by itself at its start.
        if (wish == Wish::toggle || wish == Wish::settings)
            askItself(wish == Wish::toggle ? Wish::open : wish);
        return claimed == Claim::owned ? Role::first : Role::alone;
    }
    return Role::unanswered;
}

void BusApplicationInstance::askItself(Wish wish)
{
    receive({ .wish = wish, .userTime = ApplicationInterface::userTime(m_start.id) });
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

BusApplicationInstance::Answer BusApplicationInstance::handOver(Wish wish)
{
    if (wish == Wish::none)
        return Answer::taken;
    auto const action = ApplicationInterface::actionOf(wish);
    auto call = QDBusMessage::createMethodCall(name(), objectPath(), QStringLiteral("org.freedesktop.Application"),
        action.isEmpty() ? QStringLiteral("Activate") : QStringLiteral("ActivateAction"));
    if (!action.isEmpty())
        call << action << QVariantList();
    QVariantMap platformData;
    if (!m_start.id.isEmpty())
        platformData.insert(QStringLiteral("desktop-startup-id"), m_start.id);
    call << platformData;
    call.setAutoStartService(false);
    auto const reply = m_bus.call(call, QDBus::Block, static_cast<int>(m_answerTime.count()));
    if (reply.type() == QDBusMessage::ReplyMessage)
        return Answer::taken;
    // Also said of a process that ends while it is asked: whether the name is free again tells them apart.
    return QDBusError(reply).type() == QDBusError::NoReply ? Answer::none : Answer::ownerGone;
}

// The first request of a process that the bus began is why it runs. By then the reader may have opened by itself.
void BusApplicationInstance::receive(Request request)
{
    bool const isWhyItRuns = std::exchange(m_start.by, Start::By::user) == Start::By::bus;
    if (isWhyItRuns && request.wish == Wish::toggle)
        request.wish = Wish::open;
    if (m_requested.isEmpty())
        m_kept.push_back(request);
    else
        m_requested.tell(request);
}

Registration BusApplicationInstance::observeRequests(std::function<void(Request const&)> requested)
{
    for (auto const& request : std::exchange(m_kept, {}))
        requested(request);
    return m_requested.add(std::move(requested));
}

}
