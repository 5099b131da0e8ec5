#include "linux/freedesktop/PortalOpenPanel.h"

#include "linux/freedesktop/PortalRequest.h"

#include <utility>

namespace Quillory {

PortalOpenPanel::PortalOpenPanel(QDBusConnection sessionBus)
    : m_bus(std::move(sessionBus))
{
}

void PortalOpenPanel::beginSheetModal(
    std::uint64_t window, OpenPanelSettings const& settings, std::function<void(Response)> ended)
{
    m_ended = std::move(ended);
    if (settings.allowedContentType == OpenPanelSettings::ContentType::application) {
        m_url = QString();
        return end(Response::ok);
    }
    m_requests.reset(new QObject);
    PortalRequest::start(m_bus, PortalRequest::Folder { settings.message, settings.prompt, window }, m_requests.get(),
        m_lifetime.guarded([this](PortalRequest::Answer const& answer) {
            using enum PortalRequest::Answer::Outcome;
            if (answer.outcome == done && !answer.folder.isEmpty())
                m_url = answer.folder;
            if (answer.outcome == failed)
                m_failure = answer.description;
            end(m_url ? Response::ok : Response::cancel);
        }));
}

void PortalOpenPanel::cancel()
{
    if (!m_ended)
        return;
    delete m_requests.release(); // and with it the dialog
    end(Response::cancel);
}

void PortalOpenPanel::end(Response response)
{
    if (auto const ended = std::exchange(m_ended, nullptr))
        ended(response);
}

}
