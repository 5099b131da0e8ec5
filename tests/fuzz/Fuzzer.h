#pragma once

#include <QByteArray>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

// What each program of this folder gives: one run on one input. Anything but a return is a finding.
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size);

namespace Quillory {

inline QByteArray bytesOf(std::uint8_t const* data, std::size_t size)
{
    return QByteArray(reinterpret_cast<char const*>(data), static_cast<qsizetype>(size));
}

// A broken promise of ours is a finding like any other.
inline void require(bool holds)
{
    if (!holds)
        std::abort();
}

}
