#pragma once

#include "platform/Registration.h"

#include <cstdint>
#include <functional>
#include <optional>

namespace Quillory {

// One process for each session: the first one to start serves, every later one asks it and ends. Main thread only.
class ApplicationInstance {
public:
    enum class Wish { none, open, toggle, settings };

    struct Request {
        Wish wish = Wish::open;
        // The server time of the user's key or click that caused it, where the desktop passed one on.
        std::optional<std::uint32_t> userTime;
        bool operator==(Request const&) const = default;
    };

    enum class Role {
        first,
        alone,      // there is no session to look in: the program serves, and nobody can ask it
        handedOver, // the first process took the wish
        unanswered, // the first process is there and does not answer
    };

    virtual ~ApplicationInstance() = default;

    // To be called once, before the program shows anything. A process that is not the first passes `wish` on to the
    // one that is, and should end: with success when that one took it.
    virtual Role start(Wish wish) = 0;

    // Calls `requested` for each request of other processes and of the desktop. Those that came before anybody observed
    // are handed to the first who does, before this returns.
    virtual Registration observeRequests(std::function<void(Request const&)> requested) = 0;
};

}
