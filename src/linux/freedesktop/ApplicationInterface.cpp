#include "linux/freedesktop/ApplicationInterface.h"

#include <utility>

namespace Quillory {

ApplicationInterface::ApplicationInterface(std::function<void(ApplicationInstance::Request const&)> requested)
    : m_requested(std::move(requested))
{
}

QString ApplicationInterface::actionOf(ApplicationInstance::Wish wish)
{
    switch (wish) {
    case ApplicationInstance::Wish::toggle:
        return QStringLiteral("toggle");
    case ApplicationInstance::Wish::settings:
        return QStringLiteral("settings");
    default:
        return {};
    }
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
    request(ApplicationInstance::Wish::open, platformData);
}

void ApplicationInterface::Open(QStringList const&, QVariantMap const& platformData)
{
    request(ApplicationInstance::Wish::open, platformData);
}

void ApplicationInterface::ActivateAction(QString const& name, QVariantList const&, QVariantMap const& platformData)
{
    for (auto const wish : { ApplicationInstance::Wish::toggle, ApplicationInstance::Wish::settings }) {
        if (name == actionOf(wish))
            request(wish, platformData);
    }
}

void ApplicationInterface::request(ApplicationInstance::Wish wish, QVariantMap const& platformData)
{
    ApplicationInstance::Request request { .wish = wish, .userTime = {} };
    for (auto const& key : { QStringLiteral("desktop-startup-id"), QStringLiteral("activation-token") }) {
        if (!request.userTime)
            request.userTime = userTime(platformData.value(key).toString());
    }
    m_requested(request);
}

}
