#include "app/command/Command.h"

#include <array>
#include <string_view>

namespace Quillory {

namespace {

enum class Parameter { none, optional, needed };

struct Verb {
    std::string_view option;
    char const* action;
    Parameter parameter = Parameter::none;
    std::string_view parameterOption;
};

constexpr auto verbs = std::to_array<Verb>({
    { "--toggle", "toggle" },
    { "--open", "open" },
    { "--peek", "peek", Parameter::optional, "--held" },
    { "--peek-end", "peek-end" },
    { "--settings", "settings" },
    { "--show", "show", Parameter::needed, "--show" },
});

// The value of an option that stands at the front, written as `--option value` or `--option=value`.
char const* value(std::span<char* const> arguments, std::string_view option)
{
    std::string_view const first = arguments.front();
    if (first == option)
        return arguments.size() == 2 ? arguments[1] : nullptr;
    bool const isJoined = arguments.size() == 1 && first.starts_with(option)
        && first.substr(option.size()).starts_with('=');
    return isJoined ? arguments.front() + option.size() + 1 : nullptr;
}

std::optional<Command> commandOf(Verb const& verb, std::span<char* const> arguments)
{
    Command command { Command::Kind::action, verb.action, nullptr };
    if (verb.parameter != Parameter::needed) {
        if (arguments.front() != verb.option)
            return std::nullopt;
        if (arguments.size() == 1)
            return command;
        arguments = arguments.subspan(1);
    }
    if (verb.parameter != Parameter::none)
        command.parameter = value(arguments, verb.parameterOption);
    return command.parameter ? std::optional(command) : std::nullopt;
}

}

bool Command::isPeekEnd() const
{
    return kind == Kind::action && std::string_view("peek-end") == action;
}

std::optional<Command> Command::read(std::span<char* const> arguments)
{
    if (arguments.empty())
        return Command();
    if (arguments.size() == 1 && std::string_view("--background") == arguments.front())
        return Command { Kind::beThere };
    for (auto const& verb : verbs) {
        if (auto const command = commandOf(verb, arguments))
            return command;
    }
    return std::nullopt;
}

}
