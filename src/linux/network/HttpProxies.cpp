#include "linux/network/HttpProxies.h"

#include <QHostAddress>

namespace Quillory {

QList<QNetworkProxy> HttpProxies::queryProxy(QNetworkProxyQuery const& query)
{
    if (QHostAddress(query.peerHostName()).isLoopback())
        return { QNetworkProxy(QNetworkProxy::NoProxy) };
    return systemProxyForQuery(query);
}

}
