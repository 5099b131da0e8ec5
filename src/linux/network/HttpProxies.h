#pragma once

#include <QNetworkProxyFactory>

namespace Quillory {

// The proxies that the desktop or the environment names, and none for this machine's own servers.
class HttpProxies final : public QNetworkProxyFactory {
public:
    QList<QNetworkProxy> queryProxy(QNetworkProxyQuery const& query) override;
};

}
