#include "fuzz/Fuzzer.h"

#include "library/ShortcutSheet.h"

// Any bytes give a valid sheet or a message, the same each time.
int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    using namespace Quillory;
    auto const bytes = bytesOf(data, size);
    auto const first = ShortcutSheet::decode(bytes);
    auto const second = ShortcutSheet::decode(bytes);
    require(first.has_value() == second.has_value());
    if (!first) {
        require(!first.error().message.isEmpty() && first.error() == second.error());
        return 0;
    }
    require(*first == *second && first->schemaVersion == 1 && !first->title.trimmed().isEmpty());
    require(first->icons().size() <= first->sections.size() + 1);
    return 0;
}
