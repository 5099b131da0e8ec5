#include "linux/worker/Confinement.h"
#include "linux/worker/WorkerMain.h"

#include <condition_variable>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <mutex>
#include <new>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using namespace Quillory;

constexpr int workerSocket = 3;

bool isOpened(int descriptor)
{
    return descriptor >= 0;
}

bool forks()
{
    auto const child = fork();
    if (child == 0)
        _exit(0);
    return child > 0 && waitpid(child, nullptr, 0) == child;
}

bool executes()
{
    char program[] = "/bin/true";
    char* const arguments[] { program, nullptr };
    execv(program, arguments);
    return false; // it would not have come back, which is seen as a crash
}

// The doors that stand open, a word each.
std::string openDoors()
{
    using Door = std::pair<char const*, std::function<bool()>>;
    std::vector<Door> doors {
        { "read", [] { return isOpened(open("/etc/passwd", O_RDONLY)); } },
        { "here", [] { return isOpened(open(".", O_RDONLY | O_DIRECTORY)); } },
        { "itself", [] { return isOpened(open("/proc/self/mem", O_RDWR)); } },
        { "create", [] { return isOpened(open("/dev/shm/quillory-worker", O_WRONLY | O_CREAT, 0600)); } },
        { "folder", [] { return mkdirat(AT_FDCWD, "/dev/shm/quillory-worker", 0700) == 0; } },
        { "output", [] { return write(STDOUT_FILENO, "x", 1) > 0 || write(STDERR_FILENO, "x", 1) > 0; } },
        { "execute", executes },
        { "environment", [] { return environ && environ[0]; } },
        { "core", [] { return prctl(PR_GET_DUMPABLE) == 1; } },
    };
    if (filtersSystemCalls) {
        doors.insert(doors.end(),
            { { "network", [] { return isOpened(socket(AF_INET, SOCK_STREAM, 0)); } },
                { "local", [] { return isOpened(socket(AF_UNIX, SOCK_STREAM, 0)); } }, { "fork", forks },
                { "parent", [] { return kill(getppid(), 0) == 0; } },
                { "code",
                    [] { return mmap(nullptr, 4096, PROT_EXEC, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0) != MAP_FAILED; } },
                { "memory", [] { return isOpened(memfd_create("x", 0)); } },
                { "trace", [] { return syscall(SYS_ptrace, 0, 0, 0, 0) == 0; } } });
    }
    for (int descriptor = workerSocket + 3; descriptor < 256; ++descriptor)
        doors.push_back({ "descriptor", [descriptor] { return fcntl(descriptor, F_GETFD) >= 0; } });
    std::string open;
    for (auto const& [name, isOpen] : doors)
        open += isOpen() ? name + std::string(" ") : "";
    return open;
}

void hang()
{
    std::mutex mutex;
    std::condition_variable never;
    std::unique_lock lock(mutex);
    while (true)
        never.wait(lock);
}

// So that the answers can be changed after they were given.
void keepAnswersOpen()
{
    for (int descriptor = workerSocket + 1; descriptor < workerSocket + 3; ++descriptor)
        mmap(nullptr, 4096, PROT_WRITE, MAP_SHARED, descriptor, 0);
}

void answerTo(std::string_view word, std::function<void(std::string_view)> const& answer)
{
    if (word == "spin") {
        static bool volatile ends = false;
        while (!ends) { }
    } else if (word == "hang") {
        hang();
    } else if (word == "crash") {
        __builtin_trap();
    } else if (word == "endless") {
        while (true)
            answer(std::string(1U << 20U, 'x'));
    } else if (word == "hungry") {
        while (true)
            std::memset(::operator new(1U << 26U), 1, 1);
    } else if (word == "chatter") {
        send(workerSocket, "x", 1, 0);
    } else if (word == "keep") {
        keepAnswersOpen();
    } else if (word == "doors") {
        answer(openDoors());
    }
    answer(word);
}

}

int main(int argc, char* argv[])
{
    if (!isWorkerStart(argc, argv))
        return EXIT_FAILURE;
    endWithParent();
    return runWorker([]() -> Interpreter {
        return [](std::uint32_t, std::uint32_t, std::span<std::byte const> bytes, ByteSink const& sink) {
            answerTo({ reinterpret_cast<char const*>(bytes.data()), bytes.size() },
                [&](std::string_view text) { sink(std::as_bytes(std::span(text))); });
        };
    });
}
