#pragma once

#include "platform/Downloads.h"
#include "platform/Executor.h"

#include <QNetworkAccessManager>

#include <memory>

namespace Quillory {

// Downloads by the toolkit's client, which is there only while one is under way: it has a thread and keeps connections.
class HttpDownloads final : public Downloads {
public:
    explicit HttpDownloads(Executor& executor)
        : m_executor(executor)
    {
    }

    Registration start(Request request, Received received, Done done) override;

private:
    Executor& m_executor;
    std::weak_ptr<QNetworkAccessManager> m_client; // held by those that are under way
};

}
