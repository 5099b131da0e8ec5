#include "fuzz/Fuzzer.h"

#include "rendering/MarkdownRenderer.h"

// Any text gives a tree that can be rendered whole, equal for equal texts.
int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    using namespace Quillory;
    // The parser needs time by the square of some inputs: longer ones would be found slow and nothing else.
    constexpr std::size_t longestInput = 16 * 1024;
    if (size > longestInput)
        return 0;
    auto const bytes = bytesOf(data, size);
    auto const tree = ParsedMarkdown::parsingUtf8(bytes);
    require(tree == ParsedMarkdown::parsingUtf8(bytes));
    auto const rendered = MarkdownRenderer::render(tree, tree.firstHeadingTitle().value_or(QString()), {}, 16);
    for (auto const& target : rendered.copyTargets)
        require(target.range.location >= 0 && target.range.end() <= rendered.text.length());
    return 0;
}
