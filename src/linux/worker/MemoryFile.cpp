#include "linux/worker/MemoryFile.h"

#include <utility>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Quillory {

namespace {

constexpr int allSeals = F_SEAL_SEAL | F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_WRITE;

// A mapping costs pages and one of the process's few tens of thousands.
constexpr std::uint64_t copiedSize = std::uint64_t { 64 } << 10U;

class Mapping {
public:
    Mapping(void* memory, std::size_t size)
        : m_memory(memory)
        , m_size(size)
    {
    }
    ~Mapping() { munmap(m_memory, m_size); }
    Mapping(Mapping const&) = delete;
    Mapping& operator=(Mapping const&) = delete;

private:
    void* m_memory;
    std::size_t m_size;
};

std::optional<std::uint64_t> sizeOf(int descriptor)
{
    struct stat status {};
    if (fstat(descriptor, &status) != 0 || status.st_size < 0)
        return std::nullopt;
    return static_cast<std::uint64_t>(status.st_size);
}

std::optional<SealedBytes> mapped(int descriptor, std::uint64_t size)
{
    if (size == 0)
        return SealedBytes();
    auto* const memory = mmap(nullptr, size, PROT_READ, MAP_SHARED, descriptor, 0);
    if (memory == MAP_FAILED)
        return std::nullopt;
    return SealedBytes(std::make_shared<Mapping const>(memory, size), { static_cast<std::byte*>(memory), size });
}

std::optional<SealedBytes> copied(int descriptor, std::uint64_t size)
{
    auto const copy = std::make_shared<std::vector<std::byte>>(size);
    if (pread(descriptor, copy->data(), size, 0) != static_cast<ssize_t>(size))
        return std::nullopt;
    return SealedBytes(copy, *copy);
}

bool writeAll(int descriptor, QByteArray const& bytes)
{
    for (qsizetype done = 0; done < bytes.size();) {
        auto const written = write(descriptor, bytes.constData() + done, static_cast<std::size_t>(bytes.size() - done));
        if (written <= 0)
            return false;
        done += written;
    }
    return true;
}

}

MemoryFile::MemoryFile(FileDescriptor descriptor)
    : m_descriptor(std::move(descriptor))
{
}

std::optional<MemoryFile> MemoryFile::empty()
{
    FileDescriptor descriptor(memfd_create("quillory", MFD_CLOEXEC | MFD_ALLOW_SEALING));
    if (!descriptor.isOpen())
        return std::nullopt;
    return MemoryFile(std::move(descriptor));
}

std::optional<MemoryFile> MemoryFile::holding(std::vector<QByteArray> const& pieces)
{
    auto file = empty();
    if (!file)
        return std::nullopt;
    for (auto const& piece : pieces) {
        if (!writeAll(file->descriptor(), piece))
            return std::nullopt;
    }
    if (fcntl(file->descriptor(), F_ADD_SEALS, allSeals) != 0)
        return std::nullopt;
    return file;
}

std::optional<SealedBytes> MemoryFile::seal(std::uint64_t limit) const
{
    // Fails while anybody has it mapped for writing, and when somebody else has sealed it.
    if (fcntl(descriptor(), F_ADD_SEALS, allSeals) != 0)
        return std::nullopt;
    auto const size = sizeOf(descriptor());
    if (!size || *size > limit)
        return std::nullopt;
    return *size <= copiedSize ? copied(descriptor(), *size) : mapped(descriptor(), *size);
}

std::optional<SealedBytes> mapSealed(int descriptor)
{
    if (fcntl(descriptor, F_GET_SEALS) != allSeals)
        return std::nullopt;
    auto const size = sizeOf(descriptor);
    return size ? mapped(descriptor, *size) : std::nullopt;
}

}
