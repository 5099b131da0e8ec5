#include "linux/freedesktop/ChildProcess.h"

#include "linux/files/SpawnSettings.h"

#include <QCoreApplication>
#include <QFile>
#include <QSocketNotifier>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Quillory {

namespace {

// Without what concerns our own start alone: the next program would take it for its own, and appear under our name or
// in the wrong place.
std::vector<char*> environment()
{
    constexpr std::array<std::string_view, 5> ours { "XDG_ACTIVATION_TOKEN=", "DESKTOP_STARTUP_ID=", "DBUS_STARTER_",
        "GIO_LAUNCHED_DESKTOP_FILE", "BAMF_DESKTOP_FILE_HINT=" };
    std::vector<char*> variables;
    for (auto** variable = environ; *variable; ++variable) {
        if (std::ranges::none_of(ours, [&](auto name) { return std::string_view(*variable).starts_with(name); }))
            variables.push_back(*variable);
    }
    variables.push_back(nullptr);
    return variables;
}

std::optional<int> collect(pid_t process)
{
    int status = 0;
    if (waitpid(process, &status, 0) != process || !WIFEXITED(status))
        return std::nullopt;
    return WEXITSTATUS(status);
}

void watch(pid_t process, ChildProcess::Ended ended)
{
    auto const descriptor = static_cast<int>(syscall(SYS_pidfd_open, process, 0));
    if (descriptor < 0)
        return; // its end stays unseen
    auto* const notifier = new QSocketNotifier(descriptor, QSocketNotifier::Read, QCoreApplication::instance());
    QObject::connect(notifier, &QObject::destroyed, [descriptor] { close(descriptor); });
    QObject::connect(notifier, &QSocketNotifier::activated, notifier, [notifier, process, ended = std::move(ended)] {
        notifier->setEnabled(false);
        notifier->deleteLater();
        ended(collect(process));
    });
}

}

std::expected<void, SystemError> ChildProcess::start(QStringList const& command, QString const& folder, Ended ended)
{
    std::vector<QByteArray> texts;
    texts.reserve(static_cast<std::size_t>(command.size()));
    for (auto const& argument : command)
        texts.push_back(QFile::encodeName(argument));
    std::vector<char*> arguments;
    arguments.reserve(texts.size() + 1);
    for (auto& text : texts)
        arguments.push_back(text.data());
    arguments.push_back(nullptr);

    // In a session of its own and without our input.
    SpawnSettings settings(POSIX_SPAWN_SETSID);
    posix_spawn_file_actions_addopen(&settings.actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addclosefrom_np(&settings.actions, STDERR_FILENO + 1);
    if (!folder.isEmpty())
        posix_spawn_file_actions_addchdir_np(&settings.actions, QFile::encodeName(folder).constData());
    pid_t process = 0;
    auto const variables = environment();
    auto const error = posix_spawnp(
        &process, arguments.front(), &settings.actions, &settings.attributes, arguments.data(), variables.data());
    if (error != 0)
        return std::unexpected(SystemError(error));
    watch(process, std::move(ended));
    return {};
}

}
