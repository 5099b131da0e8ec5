#pragma once

#include <cmark-gfm.h>

#include <array>
#include <csetjmp>
#include <cstddef>
#include <vector>

namespace Quillory::Markup {

// The memory of one parse: handed out from slabs, given back as a whole. The parser's own way out when memory ends is
// to abort the process; here the parse ends instead, through `giveUp`, when it asks for more than the limit.
// Belongs to the thread that made it, and there is at most one on a thread.
class ParserMemory {
public:
    explicit ParserMemory(std::size_t limit); // bytes
    ~ParserMemory();
    ParserMemory(ParserMemory const&) = delete;
    ParserMemory& operator=(ParserMemory const&) = delete;

    // For the parser. Serves the memory that the calling thread has.
    static cmark_mem* allocator();

    // The thread continues here when the limit is passed. Set by setjmp before the first allocation; only frames of the
    // parser may lie between the two.
    std::jmp_buf giveUp;

    // To be called before the frame that set `giveUp` is left. From here on nothing is refused.
    void finishParse() { m_limit = 0; }

private:
    struct Block; // stands before every piece of memory handed out
    struct Large;

    static constexpr std::size_t granule = 16;
    static constexpr std::size_t smallLimit = 1024;
    static constexpr std::size_t slabSize = std::size_t { 64 } * 1024;

    static ParserMemory& ofThisThread();
    static void* callocate(std::size_t count, std::size_t size);
    static void* reallocate(void* memory, std::size_t size);
    static void release(void* memory);

    void* take(std::size_t size);
    void* takeSmall(std::size_t size);
    void* takeLarge(std::size_t size);
    void count(std::size_t size);
    [[noreturn]] void end();

    std::size_t m_limit; // bytes, 0 for none
    std::size_t m_used = 0;
    std::byte* m_free = nullptr;
    std::byte* m_slabEnd = nullptr;
    std::vector<std::byte*> m_slabs;
    std::array<Block*, smallLimit / granule + 1> m_reusable {};
    Large* m_large = nullptr;
};

}
