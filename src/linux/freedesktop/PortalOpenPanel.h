#pragma once

#include "platform/Lifetime.h"
#include "platform/OpenPanel.h"

#include <QDBusConnection>
#include <QObject>

#include <memory>

namespace Quillory {

// The desktop's own dialog, which shows the user's files to the user alone: a sandbox gets what was chosen. Only folders are
// chosen by it. Which application opens a file the desktop asks when the file is handed over, so that the answer to that
// question is an empty path, at once.
class PortalOpenPanel final : public OpenPanel {
public:
    explicit PortalOpenPanel(QDBusConnection sessionBus);

    void beginSheetModal(
        std::uint64_t window, OpenPanelSettings const& settings, std::function<void(Response)> ended) override;
    std::optional<QString> url() const override { return m_url; }
    QString failure() const override { return m_failure; }
    void orderOut() override { m_requests.reset(); }
    void cancel() override;

private:
    // Destroyed in a later turn: the answer comes from inside the request.
    struct Later {
        void operator()(QObject* object) const { object->deleteLater(); }
    };

    void end(Response response);

    QDBusConnection m_bus;
    std::unique_ptr<QObject, Later> m_requests;
    std::function<void(Response)> m_ended;
    std::optional<QString> m_url;
    QString m_failure;
    Lifetime m_lifetime;
};

}
