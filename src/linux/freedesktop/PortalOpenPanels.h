#pragma once

#include "platform/OpenPanels.h"

#include <QDBusConnection>

namespace Quillory {

// Dialogs of the desktop in the place of the program's own, over the same windows.
class PortalOpenPanels final : public OpenPanels {
public:
    // `ownPanels` outlives it.
    PortalOpenPanels(QDBusConnection sessionBus, OpenPanels const& ownPanels);

    std::unique_ptr<OpenPanel> openPanel() override;
    bool canAttachTo(std::uint64_t window) const override { return m_ownPanels.canAttachTo(window); }
    QString applicationsFolder() const override { return m_ownPanels.applicationsFolder(); }

private:
    QDBusConnection m_bus;
    OpenPanels const& m_ownPanels;
};

}
