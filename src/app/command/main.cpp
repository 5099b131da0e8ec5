#include "app/command/Command.h"
#include "app/command/RunningProgram.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <span>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include <unistd.h>

namespace {

using namespace Quillory;
using Answer = RunningProgram::Answer;

int fail(std::string const& sentence)
{
    std::fputs(("quillory: " + sentence + '\n').c_str(), stderr);
    return EXIT_FAILURE;
}

// Where this program stands, since a prefix may be moved as a whole. Ends in a slash.
std::string ownFolder()
{
    std::string path(PATH_MAX, '\0');
    auto const length = readlink("/proc/self/exe", path.data(), path.size());
    path.resize(static_cast<std::size_t>(std::max<ssize_t>(length, 0)));
    return path.substr(0, path.rfind('/') + 1);
}

// This process becomes the program proper. Comes back only when there is none.
int become(std::vector<char*> arguments)
{
    auto const folder = ownFolder();
    arguments.push_back(nullptr);
    for (auto const* const place : { QUILLORY_PROGRAM_FROM_COMMAND, QUILLORY_PROGRAM_FROM_BUILT_COMMAND })
        execv((folder + place).c_str(), arguments.data());
    return fail(folder + QUILLORY_PROGRAM_FROM_COMMAND + ": " + std::system_category().message(errno));
}

bool asksForVersion(std::span<char* const> arguments)
{
    std::string_view const first = arguments.empty() ? "" : arguments.front();
    return arguments.size() == 1 && (first == "--version" || first == "-v");
}

}

int main(int argc, char* argv[])
{
    std::vector<char*> const all(argv, argv + argc);
    auto const arguments = std::span(all).subspan(1);
    if (asksForVersion(arguments))
        return std::puts("quillory " QUILLORY_VERSION) < 0 ? EXIT_FAILURE : EXIT_SUCCESS;
    auto const command = Command::read(arguments);
    if (!command || !RunningProgram::canAsk(*command))
        return become(all);
    auto const reply = RunningProgram().ask(*command);
    switch (reply.answer) {
    case Answer::taken:
        return EXIT_SUCCESS;
    case Answer::refused:
        return fail(reply.sentence);
    case Answer::misused: // it says how
        return become(all);
    case Answer::none: {
        std::string tell = "--tell-unanswered"; // in the user's language
        return become({ argv[0], tell.data() });
    }
    case Answer::absent:
        return command->isPeekEnd() ? EXIT_SUCCESS : become(all);
    }
    return EXIT_FAILURE;
}
