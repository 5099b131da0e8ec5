#include "linux/freedesktop/PortalOpenPanels.h"

#include "linux/freedesktop/PortalOpenPanel.h"

#include <utility>

namespace Quillory {

PortalOpenPanels::PortalOpenPanels(QDBusConnection sessionBus, OpenPanels const& ownPanels)
    : m_bus(std::move(sessionBus))
    , m_ownPanels(ownPanels)
{
}

std::unique_ptr<OpenPanel> PortalOpenPanels::openPanel()
{
    return std::make_unique<PortalOpenPanel>(m_bus);
}

}
