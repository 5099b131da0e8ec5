#include "updates/updater/UpdateAddress.h"

namespace Quillory {

namespace {

bool isPlainLoopback(QUrl const& address)
{
    auto const host = address.host();
    return address.scheme() == QStringLiteral("http")
        && (host == QStringLiteral("127.0.0.1") || host == QStringLiteral("::1"));
}

}

bool mayFetch(QUrl const& address, QUrl const& feed)
{
    if (!address.isValid() || address.host().isEmpty() || !address.userInfo().isEmpty())
        return false;
    return address.scheme() == QStringLiteral("https") || (isPlainLoopback(address) && isPlainLoopback(feed));
}

}
