#include "WaylandKeys.h"

#include <utility>

namespace Quillory {

namespace {

// On the shared one other portals have been asked before the program could tell its name.
QDBusConnection ownConnection()
{
    return QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("quillory-shortcuts"));
}

}

WaylandKeys::WaylandKeys(HotKeys& grabs, PortalHotKeys::Operations operations)
    : m_portal(ownConnection(), std::move(operations))
    , m_hotKeys(grabs, m_portal, m_portal)
{
}

}
