#include "fuzz/Fuzzer.h"

#include "library/ForeignBytes.h"
#include "linux/qt/QtPictureDecoder.h"
#include "linux/worker/WorkerProtocol.h"
#include "text/StrictUtf8.h"

#include <algorithm>
#include <array>
#include <vector>

namespace {

using namespace Quillory;

// What the interpreter answers is adopted as what it is: a worker that does as it should is never taken for another.
void answer(SandboxRequest const& request, Interpreter const& interpreter)
{
    std::vector<std::byte> bytes;
    interpreter(request.operation, request.argument, std::as_bytes(std::span(request.bytes)),
        [&](std::span<std::byte const> part) { bytes.insert(bytes.end(), part.begin(), part.end()); });
    require(request.adopt(SealedBytes(nullptr, bytes)) != nullptr);
}

}

// What a worker is asked, as the program asks and as nobody would.
int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    static QtPictureDecoder const decoder;
    static auto const interpreter = ForeignBytes::interpreter(decoder);
    auto const bytes = bytesOf(data, size);
    if (decodeStrictUtf8(bytes))
        answer(ForeignBytes::markdown(bytes), interpreter);
    answer(ForeignBytes::thumbnail(bytes, 720), interpreter);
    answer(ForeignBytes::icon(bytes, 2), interpreter);

    auto const given = std::as_bytes(std::span(data, size));
    std::vector<std::byte> const plain(given.begin(), given.end());
    auto const split = size == 0 ? 0 : std::min<std::size_t>(data[0], size);
    auto const all = std::span<std::byte const>(plain);
    auto const items = WorkerProtocol::itemsOf(all.first(split));
    auto const pieces = items ? WorkerProtocol::piecesOf(*items, all.subspan(split)) : std::nullopt;
    if (!pieces)
        return 0;
    std::size_t sum = 0;
    for (std::size_t index = 0; index < pieces->size(); ++index) {
        auto const& piece = (*pieces)[index];
        sum += piece.size();
        interpreter(items->at(index).operation, std::min(items->at(index).argument, 2000U), piece, [](auto) { });
    }
    require(sum == size - split);
    return 0;
}
