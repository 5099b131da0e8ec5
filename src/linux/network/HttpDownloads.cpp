#include "linux/network/HttpDownloads.h"

#include "linux/network/HttpDownload.h"
#include "linux/network/HttpProxies.h"

#include <QNetworkRequest>

#include <utility>

namespace Quillory {

namespace {

// The toolkit would tell the user's language, and a browser's name. Bytes come as they are stored, so that sizes are
// those that were told.
QNetworkRequest requestFor(QUrl const& address)
{
    QNetworkRequest request(address);
    request.setRawHeader("User-Agent", "Quillory");
    request.setRawHeader("Accept-Language", "*");
    request.setRawHeader("Accept-Encoding", "identity");
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    return request;
}

}

Registration HttpDownloads::start(Request request, Received received, Done done)
{
    auto client = m_client.lock();
    if (!client) {
        client = std::make_shared<QNetworkAccessManager>();
        client->setProxyFactory(new HttpProxies); // which it owns
        m_client = client;
    }
    auto get = [client = client.get()](
                   QUrl const& address) { return std::unique_ptr<QNetworkReply>(client->get(requestFor(address))); };
    auto download = std::make_shared<HttpDownload>(
        m_executor, std::move(get), std::move(request), std::move(received), std::move(done));
    return Registration([download = std::move(download), client = std::move(client)]() mutable {
        download.reset(); // before its client
        client.reset();
    });
}

}
