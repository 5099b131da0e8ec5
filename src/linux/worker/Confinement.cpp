#include "linux/worker/Confinement.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <initializer_list>
#include <limits>
#include <vector>

#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/landlock.h>
#include <linux/sched.h>
#include <linux/seccomp.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace Quillory {

namespace {

// The parser may take 1 GiB, and the tree is made beside it.
constexpr rlim_t memoryLimit = rlim_t { 3 } << 29U; // bytes of addresses

bool limit(__rlimit_resource resource, rlim_t most)
{
    rlimit const value { most, most };
    return setrlimit(resource, &value) == 0;
}

bool limitResources(int socket, std::uint64_t longestFile)
{
    // Besides those that are open, a request brings two. No limit of processes, which counts all of the user's.
    auto const descriptors = static_cast<rlim_t>(socket) + 3;
    return limit(RLIMIT_CORE, 0) && limit(RLIMIT_FSIZE, longestFile)
        && (!filtersSystemCalls || (limit(RLIMIT_NOFILE, descriptors) && limit(RLIMIT_AS, memoryLimit)));
}

// Of the headers that this is built with; what a newer kernel knows beyond that is asked for by number.
struct LandlockRules {
    std::uint64_t files = 0;
    std::uint64_t network = 0;
    std::uint64_t scopes = 0;
};

// A ruleset that handles every right and grants none. Kernels refuse rights that they don't know.
bool forbidFiles()
{
    constexpr std::array<std::uint64_t, 6> fileRights { 0, (1U << 13U) - 1, (1U << 14U) - 1, (1U << 15U) - 1,
        (1U << 15U) - 1, (1U << 16U) - 1 }; // by version
    auto const version = syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION);
    if (version < 1)
        return errno == ENOSYS || errno == EOPNOTSUPP;
    LandlockRules rules { .files = fileRights.at(std::min<std::size_t>(static_cast<std::size_t>(version), 5)) };
    auto size = sizeof rules.files;
    if (version >= 4) {
        rules.network = 3; // bind and connect TCP
        size += sizeof rules.network;
    }
    if (version >= 6) {
        rules.scopes = 3; // abstract sockets and signals of others
        size += sizeof rules.scopes;
    }
    auto const ruleset = static_cast<int>(syscall(SYS_landlock_create_ruleset, &rules, size, 0));
    if (ruleset < 0)
        return false;
    auto const isForbidden = syscall(SYS_landlock_restrict_self, ruleset, 0) == 0;
    close(ruleset);
    return isForbidden;
}

#if defined(__x86_64__)
constexpr std::uint32_t architecture = AUDIT_ARCH_X86_64;
#elif defined(__aarch64__)
constexpr std::uint32_t architecture = AUDIT_ARCH_AARCH64;
#else
constexpr std::uint32_t architecture = 0; // without a filter
#endif

// All that a worker calls by itself, besides those whose arguments matter.
constexpr std::array allowedCalls { SYS_read, SYS_write, SYS_recvmsg, SYS_sendto, SYS_close, SYS_fstat, SYS_newfstatat,
    SYS_lseek, SYS_fcntl, SYS_munmap, SYS_mremap, SYS_madvise, SYS_brk, SYS_futex, SYS_sched_yield, SYS_set_robust_list,
    SYS_rseq, SYS_sched_getaffinity, SYS_rt_sigprocmask, SYS_rt_sigreturn, SYS_rt_sigaction, SYS_sigaltstack,
    SYS_getpid, SYS_gettid, SYS_getrandom, SYS_clock_gettime, SYS_clock_nanosleep, SYS_gettimeofday,
    SYS_restart_syscall, SYS_exit, SYS_exit_group };

constexpr std::uint32_t offsetOf(std::size_t argument)
{
    return static_cast<std::uint32_t>(offsetof(seccomp_data, args) + argument * sizeof(std::uint64_t));
}

constexpr sock_filter load(std::uint32_t offset)
{
    return BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offset);
}

constexpr sock_filter answer(std::uint32_t value)
{
    return BPF_STMT(BPF_RET | BPF_K, value);
}

// An allow list. What is not on it fails with EPERM instead of killing: a library that asks for a locale goes on.
bool filterSystemCalls()
{
    if (architecture == 0 || !filtersSystemCalls)
        return true;
    constexpr std::uint32_t forbidden = SECCOMP_RET_ERRNO | EPERM;
    constexpr auto number = static_cast<std::uint32_t>(offsetof(seccomp_data, nr));
    constexpr auto own = static_cast<std::uint32_t>(offsetof(seccomp_data, arch));
    std::vector<sock_filter> filter { load(own), BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, architecture, 1, 0),
        answer(SECCOMP_RET_KILL_PROCESS), load(number) };
    auto const when = [&](long call, std::initializer_list<sock_filter> then) {
        filter.push_back(BPF_JUMP(
            BPF_JMP | BPF_JEQ | BPF_K, static_cast<std::uint32_t>(call), 0, static_cast<std::uint8_t>(then.size())));
        filter.insert(filter.end(), then);
    };
    for (auto const call : allowedCalls)
        when(call, { answer(SECCOMP_RET_ALLOW) });
    // Memory, but none that can be executed.
    for (auto const call : { SYS_mmap, SYS_mprotect })
        when(call,
            { load(offsetOf(2)), BPF_JUMP(BPF_JMP | BPF_JSET | BPF_K, PROT_EXEC, 0, 1), answer(forbidden),
                answer(SECCOMP_RET_ALLOW) });
    filter.push_back(answer(forbidden));
    sock_fprog const program { static_cast<unsigned short>(filter.size()), filter.data() };
    if (syscall(SYS_seccomp, SECCOMP_SET_MODE_FILTER, SECCOMP_FILTER_FLAG_TSYNC, &program) == 0)
        return true;
    return errno == ENOSYS || errno == EINVAL; // a kernel without filters
}

}

void endWithParent()
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    prctl(PR_SET_NAME, "quillory-worker");
}

bool confine(int socket, std::uint64_t longestFile)
{
    // Neither a debugger nor a core file of the same user sees what a worker has read.
    if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 || prctl(PR_SET_DUMPABLE, 0) != 0)
        return false;
    close_range(static_cast<unsigned>(socket) + 1, std::numeric_limits<unsigned>::max(), 0);
    // Last of all the filter, which forbids what the others call.
    return forbidFiles() && limitResources(socket, longestFile) && filterSystemCalls();
}

}
