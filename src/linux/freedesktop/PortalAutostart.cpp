#include "linux/freedesktop/PortalAutostart.h"

#include "linux/freedesktop/PortalRequest.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <utility>

namespace Quillory {

PortalAutostart::PortalAutostart(QDBusConnection sessionBus, AutostartEntry::Folders const& folders)
    : m_bus(std::move(sessionBus))
    , m_folder(folders.own)
    , m_entry(folders, {})
{
}

Autostart::State PortalAutostart::state() const
{
    return QFileInfo::exists(m_folder) ? m_entry.state() : m_granted;
}

void PortalAutostart::ask(State wanted, Answered answered)
{
    PortalRequest::start(m_bus, PortalRequest::Background { wanted == State::on }, &m_requests,
        [this, wanted, answered = std::move(answered)](PortalRequest::Answer const& answer) mutable {
            using enum PortalRequest::Answer::Outcome;
            if (answer.outcome == done)
                m_granted = answer.startsWithSession ? State::on : State::off;
            if (answer.outcome == done && answer.startsWithSession == (wanted == State::on))
                answered({});
            else if (answer.outcome == done || answer.outcome == cancelledByUser)
                answered(std::unexpected(QCoreApplication::translate("Autostart", "The desktop does not allow it.")));
            else
                answered(std::unexpected(answer.description));
        });
}

}
