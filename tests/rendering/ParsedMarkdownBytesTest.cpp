#include "rendering/ParsedMarkdown.h"
#include "support/Test.h"

#include <cstring>
#include <vector>

namespace Quillory {
namespace {

using Bytes = std::vector<std::byte>;

constexpr std::size_t headerSize = 8;
constexpr std::size_t recordSize = 20;

Bytes bytesOf(ParsedMarkdown const& tree)
{
    Bytes bytes;
    tree.write([&](std::span<std::byte const> part) { bytes.insert(bytes.end(), part.begin(), part.end()); });
    return bytes;
}

std::optional<ParsedMarkdown> adopted(Bytes const& bytes)
{
    return ParsedMarkdown::adopting(SealedBytes(nullptr, bytes));
}

TEST(ParsedMarkdownBytes, A_tree_comes_back_and_one_that_no_text_gives_is_refused)
{
    // Records: 0 heading, 1 its text, 2 table, 3 row, 4 cell, 5 text, 6 row, 7 cell, 8 text, 9 paragraph, 10 image.
    auto const tree = ParsedMarkdown::parsing(u"# T\n\n| a |\n|---|\n| b |\n\n![c](d)"_s);
    auto const good = bytesOf(tree);
    ASSERT_EQ(adopted(good), tree);
    EXPECT_TRUE(adopted(good)->imageSources().contains(u"d"_s));

    enum Field : std::size_t {
        kind = 0,
        flags = 1,
        level = 2,
        unused = 3,
        end = 4,
        offset = 8,
        length = 12,
        second = 16
    };
    struct Change {
        std::size_t record;
        Field field;
        int value;
    };
    for (auto const& [record, field, value] : std::initializer_list<Change> { { 1, kind, 17 }, { 1, kind, 4 },
             { 3, flags, 0 }, { 3, flags, 32 }, { 4, flags, 16 }, { 4, flags, 0 }, { 9, flags, 1 }, { 9, kind, 12 },
             { 10, flags, 0 }, { 0, level, 0 }, { 0, level, 7 }, { 1, level, 1 }, { 1, unused, 1 }, { 0, end, 0 },
             { 0, end, 12 }, { 1, end, 3 }, { 2, end, 3 }, { 2, end, 6 }, { 3, end, 7 }, { 1, offset, 0 },
             { 5, offset, 3 }, { 1, length, 0 }, { 10, length, 100 }, { 10, second, 2 }, { 9, length, 1 },
             { 3, end, 4 }, { 4, end, 5 }, { 8, kind, 14 }, { 1, second, 1 } }) {
        auto bad = good;
        bad[headerSize + recordSize * record + field] = static_cast<std::byte>(value);
        EXPECT_FALSE(adopted(bad)) << record << ' ' << field << ' ' << value;
    }
    // The same with its last cell as a paragraph after the table: each record is one that a text can give.
    auto unequal = bytesOf(ParsedMarkdown::parsing(u"| a | b |\n|---|---|\n| c | d |"_s));
    for (auto const& [record, field, value] :
        std::initializer_list<Change> { { 0, end, 9 }, { 6, end, 9 }, { 9, flags, 0 } })
        unequal[headerSize + recordSize * record + field] = static_cast<std::byte>(value);
    EXPECT_FALSE(adopted(unequal)) << "rows of two cells and of one";

    for (std::size_t size = 0; size < good.size(); ++size)
        EXPECT_FALSE(adopted(Bytes(good.begin(), good.begin() + static_cast<std::ptrdiff_t>(size)))) << size;
    auto torn = bytesOf(ParsedMarkdown::parsing(u"\U0001F600"_s));
    ASSERT_TRUE(adopted(torn));
    torn.back() = std::byte { 'x' };
    EXPECT_FALSE(adopted(torn)) << "half a character";
}

}
}
