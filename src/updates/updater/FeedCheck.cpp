#include "updates/updater/FeedCheck.h"

#include "updates/updater/DownloadSentence.h"
#include "updates/updater/UpdateAddress.h"

#include <chrono>
#include <utility>

namespace Quillory {

namespace {

constexpr std::chrono::seconds longestSilence { 30 };
constexpr std::chrono::seconds longest { 60 };

QUrl signatureOf(QUrl feed)
{
    feed.setPath(feed.path() + QStringLiteral(".minisig"));
    return feed;
}

}

FeedCheck::FeedCheck(Downloads& downloads, QUrl feed, SignedFeed::Expected expected, Done done)
    : m_downloads(downloads)
    , m_feed(std::move(feed))
    , m_expected(std::move(expected))
    , m_done(std::move(done))
{
    fetch(signatureOf(m_feed), MinisignSignature::mostBytes, m_signature, &FeedCheck::fetchFeed);
}

void FeedCheck::fetchFeed()
{
    fetch(m_feed, ReleaseFeed::mostBytes, m_document, &FeedCheck::read);
}

void FeedCheck::fetch(QUrl const& address, qsizetype mostBytes, QByteArray& into, void (FeedCheck::*next)())
{
    auto const received = [&into](QByteArray const& bytes) {
        into.append(bytes);
        return true;
    };
    m_download = m_downloads.start(
        { address, [feed = m_feed](QUrl const& to) { return mayFetch(to, feed); }, mostBytes, longestSilence, longest },
        received, [this, next](std::expected<void, Downloads::Fault> const& result) {
            if (result)
                (this->*next)();
            else
                finish(std::unexpected(toSentence(result.error())));
        });
}

void FeedCheck::read()
{
    auto feed = SignedFeed::read(m_document, m_signature, m_expected);
    if (feed)
        finish(*std::move(feed));
    else
        finish(std::unexpected(toSentence(feed.error())));
}

// Nothing of this object is used afterwards.
void FeedCheck::finish(std::expected<SignedFeed, QString> result)
{
    auto done = std::exchange(m_done, nullptr);
    done(std::move(result));
}

}
