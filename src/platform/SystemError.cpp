#include "platform/SystemError.h"

#include <cerrno>
#include <system_error>

namespace Quillory {

SystemError SystemError::last()
{
    return SystemError(errno > 0 ? errno : EIO);
}

QString SystemError::localizedDescription() const
{
    return QString::fromLocal8Bit(std::generic_category().message(m_code));
}

}
