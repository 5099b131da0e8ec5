#pragma once

#include "app/command/Command.h"

#include <memory>
#include <string>

#include <dbus/dbus.h>

namespace Quillory {

// The program that serves the session, over the session's bus.
class RunningProgram {
public:
    enum class Answer {
        taken,
        refused, // with a sentence
        misused,
        none,    // it runs and does not answer
        absent,  // it does not run, or there is no bus to look on
    };
    struct Reply {
        Answer answer = Answer::absent;
        std::string sentence;
    };

    RunningProgram();

    // Waits for the answer as long as a second start does.
    Reply ask(Command const& command) const;

    // Whether it can be passed on: a bus takes nothing but UTF-8.
    static bool canAsk(Command const& command);

private:
    struct Close {
        void operator()(DBusConnection* bus) const;
    };

    bool isThere() const;

    std::unique_ptr<DBusConnection, Close> m_bus; // null where there is none
};

}
