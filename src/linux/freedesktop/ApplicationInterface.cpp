#include "linux/freedesktop/ApplicationInterface.h"

#include "platform/ModifierNames.h"

#include <QDBusConnection>
#include <QDBusMessage>

#include <algorithm>
#include <array>
#include <utility>

namespace Quillory {

namespace {

using Wish = ApplicationInstance::Wish;

constexpr std::array<std::pair<Wish, QLatin1StringView>, 6> actions { {
    { Wish::open, QLatin1StringView("open") },
    { Wish::toggle, QLatin1StringView("toggle") },
    { Wish::peek, QLatin1StringView("peek") },
    { Wish::peekEnd, QLatin1StringView("peek-end") },
    { Wish::settings, QLatin1StringView("settings") },
    { Wish::show, QLatin1StringView("show") },
} };

// Nothing for parameters that the action has no use for.
std::optional<ApplicationInstance::Request> requestOf(Wish wish, QVariantList const& parameters)
{
    ApplicationInstance::Request request { .wish = wish };
    bool const isText = parameters.size() == 1 && parameters.first().metaType() == QMetaType::fromType<QString>();
    if (wish == Wish::show && !isText)
        return std::nullopt;
    if (wish == Wish::show)
        request.sheet = parameters.first().toString();
    if (wish == Wish::peek && !parameters.isEmpty()) {
        request.held = isText ? ModifierNames::read(parameters.first().toString()) : std::nullopt;
        if (!request.held)
            return std::nullopt;
    }
    return request;
}

}

ApplicationInterface::ApplicationInterface(std::function<void(Request const&, Answer const&)> requested)
    : m_requested(std::move(requested))
{
}

QString ApplicationInterface::actionOf(Wish wish)
{
    auto const action = std::ranges::find(actions, wish, &decltype(actions)::value_type::first);
    return action == actions.end() ? QString() : action->second;
}

QVariantList ApplicationInterface::parametersOf(Request const& request)
{
    if (request.wish == Wish::show)
        return { request.sheet };
    if (request.wish == Wish::peek && request.held)
        return { ModifierNames::write(*request.held) };
    return {};
}

std::optional<std::uint32_t> ApplicationInterface::userTime(QString const& startupId)
{
    constexpr QLatin1StringView mark("_TIME");
    auto const place = startupId.lastIndexOf(mark);
    if (place < 0)
        return std::nullopt;
    bool isNumber = false;
    auto const time = QStringView(startupId).sliced(place + mark.size()).toUInt(&isNumber);
    return isNumber && time != 0 ? std::optional(time) : std::nullopt;
}

void ApplicationInterface::Activate(QVariantMap const& platformData)
{
    request({ .wish = Wish::open }, platformData);
}

void ApplicationInterface::Open(QStringList const&, QVariantMap const& platformData)
{
    request({ .wish = Wish::open }, platformData);
}

void ApplicationInterface::ActivateAction(
    QString const& name, QVariantList const& parameters, QVariantMap const& platformData)
{
    auto const action = std::ranges::find(actions, name, &decltype(actions)::value_type::second);
    if (action == actions.end())
        return;
    if (auto const asked = requestOf(action->first, parameters))
        request(*asked, platformData);
    else
        sendErrorReply(
            QDBusError::InvalidArgs, QStringLiteral("\"%1\" can't be done with these parameters.").arg(name));
}

void ApplicationInterface::request(Request request, QVariantMap const& platformData)
{
    for (auto const& key : { QStringLiteral("desktop-startup-id"), QStringLiteral("activation-token") }) {
        if (!request.userTime)
            request.userTime = userTime(platformData.value(key).toString());
    }
    m_requested(request, request.wish == Wish::show ? laterAnswer() : [](auto const&) { });
}

ApplicationInterface::Answer ApplicationInterface::laterAnswer()
{
    setDelayedReply(true);
    return [bus = connection(), call = message()](ApplicationInstance::Outcome const& outcome) {
        bus.send(outcome ? call.createReply() : call.createErrorReply(QDBusError::Failed, outcome.error()));
    };
}

}
