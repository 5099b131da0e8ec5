#pragma once

#include "linux/files/FileDescriptor.h"
#include "platform/SealedBytes.h"

#include <QByteArray>

#include <cstdint>
#include <optional>
#include <vector>

namespace Quillory {

// Memory with a descriptor, which two processes can see.
class MemoryFile {
public:
    // Absent when memory or descriptors have run out.
    static std::optional<MemoryFile> empty();
    static std::optional<MemoryFile> holding(std::vector<QByteArray> const& pieces); // sealed

    int descriptor() const { return m_descriptor.number(); }

    // Makes sure that nobody, whoever has a descriptor of it, can change it any more, and gives its bytes: a copy where
    // they are few, or else mapped as they are. Absent when somebody can, or when there are more than `limit`.
    std::optional<SealedBytes> seal(std::uint64_t limit) const;

private:
    explicit MemoryFile(FileDescriptor descriptor);

    FileDescriptor m_descriptor;
};

// The bytes of a descriptor, mapped for reading. Absent when they can't be had or can still be changed.
std::optional<SealedBytes> mapSealed(int descriptor);

}
