#include "linux/network/HttpDownload.h"

#include <QNetworkRequest>
#include <QVariant>

#include <utility>

namespace Quillory {

namespace {

constexpr int statusDone = 200;
constexpr int mostRedirects = 5;

int statusOf(QNetworkReply const& reply)
{
    return reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
}

bool isWhole(QNetworkReply const& reply)
{
    return statusOf(reply) == statusDone;
}

}

HttpDownload::HttpDownload(
    Executor& executor, Get get, Downloads::Request request, Downloads::Received received, Downloads::Done done)
    : m_executor(executor)
    , m_get(std::move(get))
    , m_request(std::move(request))
    , m_received(std::move(received))
    , m_done(std::move(done))
    , m_deadline(executor.after(m_request.longest, [this] { finish(std::unexpected(Downloads::Fault::timedOut)); }))
{
    ask(m_request.address);
}

HttpDownload::~HttpDownload()
{
    m_reply->disconnect(this);
    m_reply->abort();
}

void HttpDownload::ask(QUrl const& address)
{
    m_reply = m_get(address);
    connect(m_reply.get(), &QNetworkReply::metaDataChanged, this, &HttpDownload::head);
    connect(m_reply.get(), &QNetworkReply::readyRead, this, &HttpDownload::read);
    connect(m_reply.get(), &QNetworkReply::finished, this, &HttpDownload::replied);
    hearFrom();
}

void HttpDownload::follow(QUrl const& to)
{
    auto const target = m_reply->url().resolved(to);
    if (++m_redirects > mostRedirects || !m_request.allows(target))
        return finish(std::unexpected(Downloads::Fault::refused));
    m_reply->disconnect(this);
    m_reply.release()->deleteLater(); // it is in the middle of telling
    ask(target);
}

// The head alone decides where it can: what else a server sends along is not read.
void HttpDownload::head()
{
    hearFrom();
    auto const target = m_reply->attribute(QNetworkRequest::RedirectionTargetAttribute);
    if (target.isValid())
        follow(target.toUrl());
    else if (!isWhole(*m_reply))
        finish(std::unexpected(Downloads::Fault::missing));
    else if (m_reply->header(QNetworkRequest::ContentLengthHeader).toLongLong() > m_request.mostBytes)
        finish(std::unexpected(Downloads::Fault::tooLarge));
}

void HttpDownload::read()
{
    hearFrom();
    if (!isWhole(*m_reply))
        return;
    auto const bytes = m_reply->readAll();
    m_bytes += bytes.size();
    if (m_bytes > m_request.mostBytes)
        finish(std::unexpected(Downloads::Fault::tooLarge));
    else if (!bytes.isEmpty() && !m_received(bytes))
        finish(std::unexpected(Downloads::Fault::unwanted));
}

void HttpDownload::hearFrom()
{
    m_silence = m_executor.after(
        m_request.longestSilence, [this] { finish(std::unexpected(Downloads::Fault::timedOut)); });
}

void HttpDownload::replied()
{
    if (m_reply->error() != QNetworkReply::NoError)
        return finish(std::unexpected(faultOfReply()));
    read();
    // A server that hangs up can leave a reply without an error and without a head.
    finish(
        isWhole(*m_reply) ? std::expected<void, Downloads::Fault>() : std::unexpected(Downloads::Fault::interrupted));
}

// Told in a turn of its own: the reply is in the middle of its work. The first outcome counts.
void HttpDownload::finish(std::expected<void, Downloads::Fault> result)
{
    if (!m_done)
        return;
    m_reply->disconnect(this);
    m_silence.end();
    m_deadline.end();
    m_finish = m_executor.post([done = std::exchange(m_done, nullptr), result]() mutable { done(result); });
}

Downloads::Fault HttpDownload::faultOfReply() const
{
    using enum Downloads::Fault;
    switch (m_reply->error()) {
    case QNetworkReply::SslHandshakeFailedError:
        return untrusted;
    case QNetworkReply::RemoteHostClosedError:
    case QNetworkReply::TemporaryNetworkFailureError:
    case QNetworkReply::NetworkSessionFailedError:
        return interrupted;
    default:
        return unreachable;
    }
}

}
