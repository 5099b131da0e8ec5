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
    , m_interface([this](Request const& request, Answer const& answer) { receive(request, answer); })
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

ApplicationInstance::Role BusApplicationInstance::start(Request request, Answer answered)
{
    // The one that owned the name may end while it is asked; then the name is free.
    constexpr int tries = 3;
    auto reply = Reply::ownerGone;
    for (int attempt = 0; attempt < tries; ++attempt) {
        auto const claimed = claim();
        if (claimed == Claim::ownedByAnother) {
            if (reply == Reply::none)
                break;
            reply = handOver(request, answered);
            if (reply == Reply::taken)
                return Role::handedOver;
            continue;
        }
        askItself(std::move(request), answered);
        return claimed == Claim::owned ? Role::first : Role::alone;
    }
    return Role::unanswered;
}

// Nothing is shown yet, unless the program opens by itself at its start, and there is no peek to end.
void BusApplicationInstance::askItself(Request request, Answer const& answered)
{
    if (request.wish == Wish::none || request.wish == Wish::plainStart || request.wish == Wish::peekEnd)
        return;
    if (request.wish == Wish::toggle)
        request.wish = Wish::open;
    request.userTime = ApplicationInterface::userTime(m_start.id);
    receive(std::move(request), answered);
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

BusApplicationInstance::Reply BusApplicationInstance::handOver(Request const& request, Answer const& answered)
{
    if (request.wish == Wish::none)
        return Reply::taken;
    bool const isAction = request.wish != Wish::plainStart;
    auto call = QDBusMessage::createMethodCall(name(), objectPath(), QStringLiteral("org.freedesktop.Application"),
        isAction ? QStringLiteral("ActivateAction") : QStringLiteral("Activate"));
    if (isAction)
        call << ApplicationInterface::actionOf(request.wish) << ApplicationInterface::parametersOf(request);
    QVariantMap platformData;
    if (!m_start.id.isEmpty())
        platformData.insert(QStringLiteral("desktop-startup-id"), m_start.id);
    call << platformData;
    call.setAutoStartService(false);
    auto const reply = m_bus.call(call, QDBus::Block, static_cast<int>(m_answerTime.count()));
    auto const error = QDBusError(reply).type();
    bool const isRefused = error == QDBusError::Failed;
    if (isRefused)
        answered(std::unexpected(reply.errorMessage()));
    if (isRefused || reply.type() == QDBusMessage::ReplyMessage)
        return Reply::taken;
    // Also said of a process that ends while it is asked: whether the name is free again tells them apart.
    return error == QDBusError::NoReply ? Reply::none : Reply::ownerGone;
}

// The first request of a process that the bus began is why it runs. By then the reader may have opened by itself.
void BusApplicationInstance::receive(Request request, Answer const& answer)
{
    bool const isWhyItRuns = std::exchange(m_start.by, Start::By::user) == Start::By::bus;
    if (isWhyItRuns && request.wish == Wish::toggle)
        request.wish = Wish::open;
    if (m_requested.isEmpty())
        m_kept.push_back({ std::move(request), answer });
    else
        m_requested.tell(request, answer);
}

Registration BusApplicationInstance::observeRequests(std::function<void(Request const&, Answer const&)> requested)
{
    for (auto const& [request, answer] : std::exchange(m_kept, {}))
        requested(request, answer);
    return m_requested.add(std::move(requested));
}

}
