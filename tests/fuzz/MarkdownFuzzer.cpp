#include "fuzz/Fuzzer.h"

#include "rendering/ParsedMarkdown.h"

#include <vector>

namespace {

using namespace Quillory;

// The parser needs time by the square of some inputs: longer ones would be found slow and nothing else.
constexpr std::size_t longestInput = 16 * 1024;

// Every node by the payload that its kind promises, without recursion.
std::size_t walk(ParsedMarkdown const& tree)
{
    std::size_t characters = 0;
    std::vector<ParsedMarkdown::Nodes> pending { tree.nodes() };
    while (!pending.empty()) {
        auto const nodes = pending.back();
        pending.pop_back();
        for (auto const node : nodes) {
            auto const value = node.value();
            require(value.index() == static_cast<std::size_t>(node.kind()));
            if (auto const* table = std::get_if<ParsedMarkdown::Table>(&value)) {
                for (auto const row : table->rows) {
                    for (auto const cell : row.cells)
                        pending.push_back(cell.nodes);
                }
            }
            if (auto const* text = std::get_if<ParsedMarkdown::Text>(&value))
                characters += static_cast<std::size_t>(text->string.size());
            if (auto const* image = std::get_if<ParsedMarkdown::Image>(&value))
                require(!image->source || tree.imageSources().contains(image->source->toString()));
            pending.push_back(node.children());
        }
    }
    return characters;
}

}

// Any text gives a tree that can be walked, equal for equal texts.
int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    if (size > longestInput)
        return 0;
    auto const bytes = bytesOf(data, size);
    auto const tree = ParsedMarkdown::parsingUtf8(bytes);
    require(tree == ParsedMarkdown::parsingUtf8(bytes));
    walk(tree);
    (void)tree.firstHeadingTitle();
    return 0;
}
