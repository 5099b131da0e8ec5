#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace Quillory {

// Texts of Markdown, well-formed UTF-8, to compare trees of.
struct MarkdownSamples {
    // Every construct at least once.
    static std::vector<std::string> const& snippets();

    // Text put together from the pieces that mean something to a parser. Equal seeds give equal texts.
    static std::string random(std::uint32_t seed);

    // The same with tables: rows of any width, hidden pipes and markers, odd blanks, containers around them.
    static std::string randomTables(std::uint32_t seed);

    static std::string repeated(std::string_view piece, std::size_t count);
};

}
