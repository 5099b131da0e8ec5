#pragma once

#include "platform/Downloads.h"
#include "platform/Executor.h"

#include <QNetworkReply>
#include <QObject>

#include <functional>
#include <memory>

namespace Quillory {

// One file that is under way. Main thread only.
class HttpDownload final : public QObject {
    Q_OBJECT
public:
    // Asks for an address and for nothing that the server sends on to.
    using Get = std::function<std::unique_ptr<QNetworkReply>(QUrl const& address)>;

    HttpDownload(
        Executor& executor, Get get, Downloads::Request request, Downloads::Received received, Downloads::Done done);
    ~HttpDownload() override;

private:
    void ask(QUrl const& address);
    void follow(QUrl const& to);
    void head();
    void read();
    void hearFrom();
    void replied();
    void finish(std::expected<void, Downloads::Fault> result);
    Downloads::Fault faultOfReply() const;

    Executor& m_executor;
    Get m_get;
    Downloads::Request m_request;
    Downloads::Received m_received;
    Downloads::Done m_done;
    std::int64_t m_bytes = 0;
    int m_redirects = 0;
    std::unique_ptr<QNetworkReply> m_reply;
    Registration m_silence;
    Registration m_deadline;
    Registration m_finish;
};

}
