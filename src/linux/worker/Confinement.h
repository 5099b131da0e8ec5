#pragma once

#include <cstdint>

namespace Quillory {

// Sanitizers map terabytes, start threads, open pipes and read /proc: under them, memory, descriptors and system calls
// stay free.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
inline constexpr bool filtersSystemCalls = false;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
inline constexpr bool filtersSystemCalls = false;
#else
inline constexpr bool filtersSystemCalls = true;
#endif
#else
inline constexpr bool filtersSystemCalls = true;
#endif

// Names this process a worker and lets the kernel end it when the thread that started it ends. For the first thread.
void endWithParent();

// Takes from this process, for good, all that interpreting bytes needs not: the file system, the network, new processes,
// other descriptors than `socket` and the three standard ones, files longer than `longestFile` bytes, and memory beyond a
// limit. False when that fails where the kernel has the means; what it has no means for stays open.
bool confine(int socket, std::uint64_t longestFile);

}
