#pragma once

#include "platform/Downloads.h"
#include "updates/feed/SignedFeed.h"

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <expected>
#include <functional>

namespace Quillory {

// One look at the feed: its signature is fetched, then the feed, and both are held against the key. Its end stops it.
class FeedCheck {
public:
    // Called once; it may end this object. The error is a sentence for the user.
    using Done = std::move_only_function<void(std::expected<SignedFeed, QString>)>;

    FeedCheck(Downloads& downloads, QUrl feed, SignedFeed::Expected expected, Done done);
    FeedCheck(FeedCheck const&) = delete;
    FeedCheck& operator=(FeedCheck const&) = delete;

private:
    void fetch(QUrl const& address, qsizetype mostBytes, QByteArray& into, void (FeedCheck::*next)());
    void fetchFeed();
    void read();
    void finish(std::expected<SignedFeed, QString> result);

    Downloads& m_downloads;
    QUrl m_feed;
    SignedFeed::Expected m_expected;
    Done m_done;
    QByteArray m_signature;
    QByteArray m_document;
    Registration m_download;
};

}
