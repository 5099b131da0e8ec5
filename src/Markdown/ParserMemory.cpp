#include "Markdown/ParserMemory.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>
#include <utility>

namespace Quillory::Markup {

namespace {

thread_local ParserMemory* memoryOfThisThread = nullptr;

}

struct alignas(16) ParserMemory::Block {
    std::size_t size; // bytes after the block
    Block* next;      // of the same size, while it can be used again

    void* memory() { return this + 1; }
    static Block* of(void* memory) { return static_cast<Block*>(memory) - 1; }
};

// Large pieces come from the system, so that what a growing one leaves goes back at once.
struct alignas(16) ParserMemory::Large {
    Large* previous;
    Large* next;
    Block block;
};

ParserMemory::ParserMemory(std::size_t limit)
    : m_limit(limit)
{
    memoryOfThisThread = this;
}

ParserMemory::~ParserMemory()
{
    memoryOfThisThread = nullptr;
    for (auto* slab : m_slabs)
        std::free(slab);
    while (m_large) {
        auto* const next = m_large->next;
        std::free(m_large);
        m_large = next;
    }
}

cmark_mem* ParserMemory::allocator()
{
    static cmark_mem functions { callocate, reallocate, release };
    return &functions;
}

ParserMemory& ParserMemory::ofThisThread()
{
    return *memoryOfThisThread;
}

void ParserMemory::count(std::size_t size)
{
    m_used += size;
    if (m_limit != 0 && m_used > m_limit)
        end();
}

void ParserMemory::end()
{
    if (m_limit == 0)
        std::abort();
    std::longjmp(giveUp, 1);
}

void* ParserMemory::take(std::size_t size)
{
    auto const rounded = std::max(granule, (size + granule - 1) / granule * granule);
    return rounded <= smallLimit ? takeSmall(rounded) : takeLarge(rounded);
}

void* ParserMemory::takeSmall(std::size_t size)
{
    auto*& reusable = m_reusable[size / granule];
    if (reusable) {
        auto* const block = reusable;
        reusable = block->next;
        return block->memory();
    }
    auto const whole = sizeof(Block) + size;
    if (static_cast<std::size_t>(m_slabEnd - m_free) < whole) {
        count(slabSize);
        auto* const slab = static_cast<std::byte*>(std::malloc(slabSize));
        if (!slab)
            end();
        m_slabs.push_back(slab);
        m_free = slab;
        m_slabEnd = slab + slabSize;
    }
    auto* const block = new (m_free) Block { size, nullptr };
    m_free += whole;
    return block->memory();
}

void* ParserMemory::takeLarge(std::size_t size)
{
    count(size);
    auto* const memory = std::malloc(sizeof(Large) + size);
    if (!memory)
        end();
    auto* const large = new (memory) Large { nullptr, m_large, { size, nullptr } };
    if (m_large)
        m_large->previous = large;
    m_large = large;
    return large->block.memory();
}

void* ParserMemory::callocate(std::size_t count, std::size_t size)
{
    auto* const memory = ofThisThread().take(count * size);
    std::memset(memory, 0, count * size);
    return memory;
}

void* ParserMemory::reallocate(void* memory, std::size_t size)
{
    if (!memory)
        return ofThisThread().take(size);
    auto const held = Block::of(memory)->size;
    if (size <= held)
        return memory;
    auto* const larger = ofThisThread().take(size);
    std::memcpy(larger, memory, held);
    release(memory);
    return larger;
}

void ParserMemory::release(void* memory)
{
    if (!memory)
        return;
    auto& self = ofThisThread();
    auto* const block = Block::of(memory);
    if (block->size <= smallLimit) {
        block->next = std::exchange(self.m_reusable[block->size / granule], block);
        return;
    }
    auto* const large = reinterpret_cast<Large*>(reinterpret_cast<std::byte*>(block) - offsetof(Large, block));
    (large->previous ? large->previous->next : self.m_large) = large->next;
    if (large->next)
        large->next->previous = large->previous;
    self.m_used -= block->size;
    std::free(large);
}

}
