#include "linux/x11/X11InputPermission.h"

#include "linux/x11/XInput.h"

namespace Quillory {

X11InputPermission::X11InputPermission(X11Connection& connection, X11Session session)
    : m_connection(connection)
    , m_hasRawEvents(session == X11Session::native && startXInput(connection.handle()))
{
}

bool X11InputPermission::canListenToEvents() const
{
    return m_hasRawEvents && !xcb_connection_has_error(m_connection.handle());
}

}
