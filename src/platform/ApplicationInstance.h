#pragma once

#include "platform/ModifierFlags.h"
#include "platform/Registration.h"

#include <QString>

#include <cstdint>
#include <expected>
#include <functional>
#include <optional>

namespace Quillory {

// One process for each session: the first one to start serves, every later one asks it and ends. Main thread only.
class ApplicationInstance {
public:
    // A plain start opens the reader only where the program runs already.
    enum class Wish { none, plainStart, open, toggle, peek, peekEnd, settings, show };

    struct Request {
        Wish wish = Wish::open;
        QString sheet; // to show: its id, name or title
        std::optional<ModifierFlags> held; // with a peek, as far as its caller knows
        // The server time of the user's key or click that caused it, where the desktop passed one on.
        std::optional<std::uint32_t> userTime;
        bool operator==(Request const&) const = default;
    };

    // What becomes of a request: nothing more to say, or why it can't be followed, a sentence for who asked.
    using Outcome = std::expected<void, QString>;
    // To be called once, at any time, for a sheet to show. All else is done when the request has been told.
    using Answer = std::function<void(Outcome const&)>;

    enum class Role {
        first,
        alone,      // there is no session to look in: the program serves, and nobody can ask it
        handedOver, // the first process took the request
        unanswered, // the first process is there and does not answer
    };

    virtual ~ApplicationInstance() = default;

    // To be called once, before the program shows anything. A process that is not the first passes the request on to the
    // one that is, and should end: with success when that one took it. `answered` hears of a request that can't be
    // followed: before this returns, or later where this process serves.
    virtual Role start(Request request, Answer answered) = 0;

    // Calls `requested` for each request of other processes and of the desktop, in their order. Those that came before
    // anybody observed are handed to the first who does, before this returns.
    virtual Registration observeRequests(std::function<void(Request const&, Answer const&)> requested) = 0;
};

}
