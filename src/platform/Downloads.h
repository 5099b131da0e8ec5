#pragma once

#include "platform/Registration.h"

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <chrono>
#include <cstdint>
#include <expected>
#include <functional>

namespace Quillory {

// Files of the web, asked for without a word of who asks. Main thread only.
class Downloads {
public:
    struct Request {
        QUrl address;
        std::function<bool(QUrl const&)> allows; // asked of each address that the server sends on to
        std::int64_t mostBytes = 0;
        std::chrono::nanoseconds longestSilence {};
        std::chrono::nanoseconds longest {}; // from beginning to end
    };

    enum class Fault {
        refused,     // sent on to an address that is not allowed, or too often
        unreachable, // no server answers, or not as one of the web
        untrusted,   // not by a certificate that the system trusts
        missing,     // the server does not have it
        timedOut,
        tooLarge,
        interrupted, // ended early
        unwanted,    // the receiver wants no more
    };

    // Gets the bytes as they come. False ends the download.
    using Received = std::function<bool(QByteArray const&)>;
    // Called once, never inside `start`, and not once the registration has ended.
    using Done = std::move_only_function<void(std::expected<void, Fault>)>;

    virtual ~Downloads() = default;

    // The registration's end stops it.
    virtual Registration start(Request request, Received received, Done done) = 0;
};

}
