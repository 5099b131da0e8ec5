#pragma once

#include <optional>
#include <span>

namespace Quillory {

// What a command line asks of the program that runs.
struct Command {
    enum class Kind {
        activate, // as a plain start does
        action,
        beThere, // nothing but to run
    };
    Kind kind = Kind::activate;
    char const* action = nullptr;
    char const* parameter = nullptr; // absent for an action without one

    bool isPeekEnd() const;

    // Of the arguments after the program's name, which it keeps pointers to. Absent for all but the plain uses of the
    // options that are for the running program: the program proper knows every option and tells of mistakes.
    static std::optional<Command> read(std::span<char* const> arguments);
};

}
