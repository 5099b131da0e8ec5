#include "fuzz/Fuzzer.h"

#include "library/ForeignBytes.h"
#include "linux/worker/WorkerProtocol.h"
#include "rendering/MarkdownRenderer.h"
#include "rendering/ParsedMarkdown.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace {

using namespace Quillory;

std::vector<std::byte> treeOf(QByteArray const& text)
{
    std::vector<std::byte> bytes;
    ParsedMarkdown::parsingUtf8(text).write(
        [&](std::span<std::byte const> part) { bytes.insert(bytes.end(), part.begin(), part.end()); });
    return bytes;
}

// Four bytes a change: where, and what is added to what is there, so that small numbers stay small.
void damage(std::vector<std::byte>& bytes, QByteArrayView changes)
{
    for (qsizetype at = 0; at + 4 <= changes.size() && !bytes.empty(); at += 4) {
        std::uint16_t place = 0;
        std::memcpy(&place, changes.data() + at, sizeof place);
        auto& byte = bytes[place % bytes.size()];
        byte = static_cast<std::byte>(static_cast<unsigned>(byte) + static_cast<std::uint8_t>(changes[at + 2]));
        if (changes[at + 3] == 'c')
            bytes.resize(place % bytes.size());
    }
}

// A tree that was adopted can be shown, and is as long as its bytes: a small answer never stands for a large text.
void useTree(std::span<std::byte const> bytes)
{
    auto const value = ForeignBytes::markdown({}).adopt(SealedBytes(nullptr, bytes));
    if (!value)
        return;
    auto const& tree = *std::static_pointer_cast<ParsedMarkdown const>(value);
    require(tree.byteSize() <= 2 * bytes.size() + 4096);
    auto const rendered = MarkdownRenderer::render(tree, tree.firstHeadingTitle().value_or(QString()), {}, 16);
    require(rendered.text.length() <= static_cast<qsizetype>(16 * bytes.size() + 4096));
}

void usePicture(SandboxRequest const& request, std::span<std::byte const> bytes)
{
    auto const value = request.adopt(SealedBytes(nullptr, bytes));
    auto const picture = value ? *std::static_pointer_cast<ForeignBytes::Picture const>(value) : std::nullopt;
    if (!picture)
        return;
    require(picture->sizeInBytes() <= static_cast<qsizetype>(bytes.size()));
    (void)picture->copy();
}

}

// What a worker sends, from a tree with some bytes changed, from a picture's header, or from nothing that was meant.
int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    auto const input = bytesOf(data, size);
    auto const end = std::max<qsizetype>(input.indexOf('\xFF'), 0);
    auto const rest = input.sliced(end);
    auto bytes = treeOf(QString::fromUtf8(input.first(end)).toUtf8());
    damage(bytes, rest.sliced(std::min<qsizetype>(rest.size(), 1)));
    useTree(bytes);

    auto const given = std::as_bytes(std::span(data, size));
    std::vector<std::byte> const plain(given.begin(), given.end());
    useTree(plain);
    usePicture(ForeignBytes::thumbnail({}, 720), plain);
    usePicture(ForeignBytes::icon({}, 2), plain);

    auto const split = size == 0 ? 0 : std::min<std::size_t>(data[0], size);
    auto const all = std::span<std::byte const>(plain);
    if (auto const answers = WorkerProtocol::answersOf(all.first(split), split / 8, all.subspan(split))) {
        std::size_t sum = 0;
        for (auto const& answer : *answers)
            sum += WorkerProtocol::aligned(answer.size());
        require(sum == size - split);
    }
    return 0;
}
