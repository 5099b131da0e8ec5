#include "linux/worker/WorkerProcess.h"

#include "linux/files/SpawnSettings.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <ctime>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Quillory {

namespace {

// A worker starts with nothing but its socket, with no environment, and with all signals as they are by default.
class WorkerStart {
public:
    explicit WorkerStart(int socket)
    {
        auto* const actions = &m_settings.actions;
        // First, since its number may be one of those below.
        posix_spawn_file_actions_adddup2(actions, socket, WorkerProtocol::socket);
        posix_spawn_file_actions_addclosefrom_np(actions, WorkerProtocol::socket + 1);
        // Not closed, or a memory file would take the place that libraries write their warnings to.
        for (auto const standard : { STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO })
            posix_spawn_file_actions_addopen(actions, standard, "/dev/null", O_RDONLY, 0);
    }

    std::optional<pid_t> spawn(QByteArray const& program) const
    {
        QByteArray name = "quillory";
        QByteArray option = "--worker";
        std::array<char*, 3> arguments { name.data(), option.data(), nullptr };
        std::array<char*, 1> environment { nullptr };
        pid_t process = 0;
        auto const error = posix_spawn(&process, program.constData(), &m_settings.actions, &m_settings.attributes,
            arguments.data(), environment.data());
        return error == 0 ? std::optional(process) : std::nullopt;
    }

private:
    SpawnSettings m_settings;
};

std::chrono::nanoseconds duration(timespec const& time)
{
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

}

WorkerProcess::WorkerProcess(FileDescriptor socket, FileDescriptor process, pid_t number)
    : m_socket(std::move(socket))
    , m_process(std::move(process))
    , m_number(number)
{
}

WorkerProcess::~WorkerProcess()
{
    if (!m_process.isOpen())
        return;
    kill();
    waitpid(m_number, nullptr, 0);
}

std::optional<WorkerProcess> WorkerProcess::start(QByteArray const& program)
{
    std::array<int, 2> ends {};
    if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0)
        return std::nullopt;
    FileDescriptor ours(ends[0]);
    FileDescriptor const theirs(ends[1]);
    auto const process = WorkerStart(theirs.number()).spawn(program);
    if (!process)
        return std::nullopt;
    FileDescriptor descriptor(static_cast<int>(syscall(SYS_pidfd_open, *process, 0)));
    if (!descriptor.isOpen()) {
        ::kill(*process, SIGKILL);
        waitpid(*process, nullptr, 0);
        return std::nullopt;
    }
    return WorkerProcess(std::move(ours), std::move(descriptor), *process);
}

std::chrono::nanoseconds WorkerProcess::processorTime() const
{
    clockid_t clock {};
    timespec time {};
    if (clock_getcpuclockid(m_number, &clock) != 0 || clock_gettime(clock, &time) != 0)
        return {};
    return duration(time);
}

bool WorkerProcess::ask(std::vector<WorkerProtocol::Item> const& items, MemoryFile const& bytes,
    MemoryFile const& answers, std::chrono::nanoseconds allowance)
{
    // A second line, for when this program is stopped and can't look at the time.
    auto const seconds = std::chrono::ceil<std::chrono::seconds>(processorTime() + allowance) + std::chrono::seconds(1);
    rlimit limit {};
    if (prlimit(m_number, RLIMIT_CPU, nullptr, &limit) == 0) {
        limit.rlim_cur = std::min(limit.rlim_max, static_cast<rlim_t>(seconds.count()));
        prlimit(m_number, RLIMIT_CPU, &limit, nullptr);
    }

    std::array const descriptors { bytes.descriptor(), answers.descriptor() };
    iovec part { const_cast<WorkerProtocol::Item*>(items.data()), items.size() * sizeof(WorkerProtocol::Item) };
    alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof descriptors)> control {};
    msghdr message {};
    message.msg_iov = &part;
    message.msg_iovlen = 1;
    message.msg_control = control.data();
    message.msg_controllen = control.size();
    auto* const header = CMSG_FIRSTHDR(&message);
    header->cmsg_level = SOL_SOCKET;
    header->cmsg_type = SCM_RIGHTS;
    header->cmsg_len = CMSG_LEN(sizeof descriptors);
    std::memcpy(CMSG_DATA(header), descriptors.data(), sizeof descriptors);
    return sendmsg(socket(), &message, MSG_NOSIGNAL | MSG_DONTWAIT) >= 0;
}

WorkerProcess::Received WorkerProcess::receive(std::vector<std::byte>& message) const
{
    // One more than the longest, so that a longer one is seen to be none.
    message.resize(WorkerProtocol::mostItems * sizeof(std::uint64_t) + 1);
    auto const size = recv(socket(), message.data(), message.size(), MSG_DONTWAIT);
    if (size < 0 && (errno == EAGAIN || errno == EINTR))
        return Received::nothing;
    if (size <= 0)
        return Received::end;
    message.resize(static_cast<std::size_t>(size));
    return Received::message;
}

void WorkerProcess::kill()
{
    if (m_process.isOpen())
        syscall(SYS_pidfd_send_signal, m_process.number(), SIGKILL, nullptr, 0);
}

bool WorkerProcess::collect()
{
    if (!m_process.isOpen())
        return true;
    if (waitpid(m_number, nullptr, WNOHANG) == 0)
        return false;
    m_process = FileDescriptor();
    return true;
}

}
