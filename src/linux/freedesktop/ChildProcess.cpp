#include "linux/freedesktop/ChildProcess.h"

#include <QCoreApplication>
#include <QFile>
#include <QSocketNotifier>

#include <algorithm>
#include <array>
#include <csignal>
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

// The new program starts with nothing blocked or ignored, in a session of its own and without our input.
class Attributes {
public:
    explicit Attributes(QByteArray const& folder)
    {
        posix_spawnattr_init(&m_attributes);
        sigset_t none;
        sigemptyset(&none);
        sigset_t all;
        sigfillset(&all);
        posix_spawnattr_setsigmask(&m_attributes, &none);
        posix_spawnattr_setsigdefault(&m_attributes, &all);
        posix_spawnattr_setflags(&m_attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSID);
        posix_spawn_file_actions_init(&m_actions);
        posix_spawn_file_actions_addopen(&m_actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        posix_spawn_file_actions_addclosefrom_np(&m_actions, STDERR_FILENO + 1);
        if (!folder.isEmpty())
            posix_spawn_file_actions_addchdir_np(&m_actions, folder.constData());
    }
    ~Attributes()
    {
        posix_spawn_file_actions_destroy(&m_actions);
        posix_spawnattr_destroy(&m_attributes);
    }
    Attributes(Attributes const&) = delete;
    Attributes& operator=(Attributes const&) = delete;

    posix_spawnattr_t const* attributes() const { return &m_attributes; }
    posix_spawn_file_actions_t const* actions() const { return &m_actions; }

private:
    posix_spawnattr_t m_attributes {};
    posix_spawn_file_actions_t m_actions {};
};

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
    for (auto const& argument : command)
        texts.push_back(QFile::encodeName(argument));
    std::vector<char*> arguments;
    for (auto& text : texts)
        arguments.push_back(text.data());
    arguments.push_back(nullptr);

    Attributes const attributes(QFile::encodeName(folder));
    pid_t process = 0;
    auto const variables = environment();
    auto const error = posix_spawnp(
        &process, arguments.front(), attributes.actions(), attributes.attributes(), arguments.data(), variables.data());
    if (error != 0)
        return std::unexpected(SystemError(error));
    watch(process, std::move(ended));
    return {};
}

}
