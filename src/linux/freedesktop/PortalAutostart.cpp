#include "linux/freedesktop/PortalAutostart.h"

#include "linux/freedesktop/PortalRequest.h"

#include <QCoreApplication>

#include <utility>

namespace Quillory {

PortalAutostart::PortalAutostart(QDBusConnection sessionBus)
    : m_bus(std::move(sessionBus))
{
}

void PortalAutostart::ask(State wanted, Answered answered)
{
    PortalRequest::start(m_bus, PortalRequest::Background { wanted == State::on }, &m_requests,
        [wanted, answered = std::move(answered)](PortalRequest::Answer const& answer) mutable {
            using enum PortalRequest::Answer::Outcome;
            if (answer.outcome == done && answer.startsWithSession == (wanted == State::on))
                answered({});
            else if (answer.outcome == done || answer.outcome == cancelledByUser)
                answered(std::unexpected(QCoreApplication::translate("Autostart", "The desktop does not allow it.")));
            else
                answered(std::unexpected(answer.description));
        });
}

}
